// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace brindle::bench {

class Plan;

// One function a topic file; it adds its rows to the table.
void addMessages(Plan& plan);
void addObjects(Plan& plan);
void addAssociatedValues(Plan& plan);
void addProperties(Plan& plan);
void addKeyValueCoding(Plan& plan);
void addAutoCoding(Plan& plan);
void addMethodChanges(Plan& plan);
void addInvocations(Plan& plan);
void addCInterface(Plan& plan);
void addDispatch(Plan& plan);
void addTimers(Plan& plan);
void addPropertyLists(Plan& plan);
void addTimeouts(Plan& plan);
void addArchives(Plan& plan);
void addEscapes(Plan& plan);
void addText(Plan& plan);
void addTextMeasures(Plan& plan);
void addIntervals(Plan& plan);
void addColours(Plan& plan);
void addRaster(Plan& plan);
void addContexts(Plan& plan);
void addDrawing(Plan& plan);
void addMenus(Plan& plan);
void addViews(Plan& plan);
void addPython(Plan& plan);
void addDefaults(Plan& plan);
void addUniqueObjects(Plan& plan);
void addPaths(Plan& plan);
void addImages(Plan& plan);
void addPanels(Plan& plan);
void addFileAccess(Plan& plan);
void addLists(Plan& plan);
void addTables(Plan& plan);
void addBars(Plan& plan);

}
