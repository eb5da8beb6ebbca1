// SPDX-License-Identifier: Apache-2.0
#include "PanelsCard.h"

#include "Samples.h"
#include "appkit/NSAlert.h"
#include "appkit/NSOpenPanel.h"
#include "foundation/Each.h"
#include "foundation/NSArray.h"
#include "kit/Drawing.h"
#include "kit/Palette.h"
#include "runtime/Table.h"

namespace gallery {

using namespace brindle;

template <> struct PanelsCard::Methods<struct Opening> {

    static Ref<NSView> initWithFrame(PanelsCard& self, NSRect frame)
    {
        self.setHeading("Panels and alerts"_ns);
        self.setCaption("As sheets of this window"_ns);
        self.answer_ = "Nothing yet"_ns;
        self.open_ = addChip(&self, "Open…"_ns, "o"_ns, sending<"openFiles">(&self));
        self.save_ = addChip(&self, "Save…"_ns, "s"_ns, sending<"saveFile">(&self));
        self.alert_ = addChip(&self, "Delete…"_ns, "x"_ns, sending<"askToDelete">(&self));
        return super<PanelsCard, "initWithFrame:", Ref<NSView>>(self, frame);
    }
    static void setFrameSize(PanelsCard& self, NSSize size)
    {
        super<PanelsCard, "setFrameSize:">(self, size);
        layOutChips(
            { self.open_.get(), self.save_.get(), self.alert_.get() }, { 16, size.height - 44 });
    }

    static void say(PanelsCard& self, const Ref<NSString>& answer)
    {
        self.answer_ = answer;
        self.setNeedsDisplay(true);
    }
    static void openFiles(PanelsCard& self)
    {
        const Ref<NSOpenPanel> panel = NSOpenPanel::cls().openPanel();
        panel->setMessage("Choose letters, or a folder of letters."_ns);
        panel->setAllowsMultipleSelection(true);
        panel->setCanChooseDirectories(true);
        panel->setAllowedFileTypes(NSArray::cls().arrayWithObjects("txt"_ns, "md"_ns).get());
        panel->setDirectoryURL(sampleFolder().get());
        const Ref<PanelsCard> card(&self);
        panel->beginSheetModalForWindow_completionHandler(
            self.window().get(), [card, panel](NSModalResponse code) {
                say(*card,
                    code == NSModalResponseOK
                        ? NSString::cls().stringWithFormat("%lu chosen, the first is %@"_ns,
                            panel->URLs()->count(), panel->URL()->lastPathComponent())
                        : Ref<NSString>("Cancelled"_ns));
            });
    }
    static void saveFile(PanelsCard& self)
    {
        const Ref<NSSavePanel> panel = NSSavePanel::cls().savePanel();
        panel->setNameFieldStringValue("Letter to Grace.txt"_ns);
        panel->setAllowedFileTypes(NSArray::cls().arrayWithObjects("txt"_ns).get());
        panel->setDirectoryURL(sampleFolder().get());
        const Ref<PanelsCard> card(&self);
        panel->beginSheetModalForWindow_completionHandler(
            self.window().get(), [card, panel](NSModalResponse code) {
                say(*card,
                    code == NSModalResponseOK ? panel->URL()->lastPathComponent()
                                              : Ref<NSString>("Cancelled"_ns));
            });
    }
    static void askToDelete(PanelsCard& self)
    {
        const Ref<NSAlert> alert = make<NSAlert>();
        alert->setAlertStyle(NSAlertStyleCritical);
        alert->setMessageText("Delete all letters for ever?"_ns);
        alert->setInformativeText("The folder holds seven of them. This cannot be undone."_ns);
        alert->addButtonWithTitle("Delete"_ns);
        alert->addButtonWithTitle("Cancel"_ns);
        alert->setShowsSuppressionButton(true);
        const Ref<PanelsCard> card(&self);
        alert->beginSheetModalForWindow_completionHandler(
            self.window().get(), [card](NSModalResponse code) {
                say(*card,
                    code == NSAlertFirstButtonReturn ? "Not deleted after all"_ns : "Kept"_ns);
            });
    }

    static void drawBody(PanelsCard& self, NSRect body)
    {
        const Palette& colors = palette();
        drawText("Answer"_ns, body.origin, Style::caption, colors.quietText.get());
        drawFitted(self.answer_.get(), { body.origin.x, body.origin.y + 18 }, body.size.width,
            Style::body, colors.text.get());
    }

    static void table(Builder& t)
    {
        t.methods({
            { "initWithFrame:", imp<initWithFrame> },
            { "setFrameSize:", imp<setFrameSize> },
            { "openFiles", imp<openFiles> },
            { "saveFile", imp<saveFile> },
            { "askToDelete", imp<askToDelete> },
            { "drawBody:", imp<drawBody> },
        });
    }
};
BRINDLE_RECORD(PanelsCard, Opening)

}
