// SPDX-License-Identifier: Apache-2.0
#include "FilesPage.h"
#include "Tour.h"
#include "appkit/NSOpenPanel.h"
#include "foundation/Dispatch.h"
#include "foundation/NSDate.h"
#include "foundation/NSNotificationCenter.h"
#include "foundation/NSRunLoop.h"

namespace gallery {

using namespace brindle;

namespace {

    /// Lets the panel's folder be read, which happens beside the clock of the tour.
    void waitForFiles(Tour& tour)
    {
        for (int i = 0; i < 20; ++i) {
            NSRunLoop::cls().mainRunLoop()->runMode_beforeDate(
                NSModalPanelRunLoopMode, NSDate::cls().dateWithTimeIntervalSinceNow(0.005).get());
            tour.settle(0.01);
        }
    }

    /// Answers the next panel that is run, and takes its picture first.
    void answerPanel(Tour& tour, const char* name)
    {
        const Ref<NSNotificationCenter> center = NSNotificationCenter::cls().defaultCenter();
        const auto token = std::make_shared<Ref<NSObject>>();
        *token
            = center->addObserverForName_object_queue_usingBlock(NSWindowDidBecomeKeyNotification,
                nullptr, nullptr, [&tour, name, token](NSNotification* note) {
                    const Ref<NSObject> panel = note->object();
                    if (!panel->isKindOfClass(NSSavePanel::cls()))
                        return;
                    NSNotificationCenter::cls().defaultCenter()->removeObserver(token->get());
                    *token = nullptr; // which keeps this closure
                    dispatch_async(dispatch_get_main_queue(), [&tour, name, panel] {
                        waitForFiles(tour);
                        tour.picture(name);
                        static_cast<NSSavePanel&>(*panel.get()).ok(nullptr);
                    });
                });
    }

}

void tourFiles(Tour& tour)
{
    tour.picture("files-light");
    answerPanel(tour, "files-access");
    tour.press("Read and remember");
    tour.press("Read once"); // the bookmark is enough
    tour.picture("files-granted");

    tour.press("Open…");
    waitForFiles(tour);
    tour.type(u"L");
    tour.picture("files-open");
    tour.darkPicture("files-open-dark");
    tour.type(u"\x1b");
    tour.press("Save…");
    waitForFiles(tour);
    tour.picture("files-save");
    tour.type(u"\r");
    tour.settle(0.3);
    tour.picture("files-replace");
    tour.type(u"\x1b");
    tour.type(u"\x1b");
    tour.press("Delete…");
    tour.settle(0.3);
    tour.picture("files-alert");
    tour.darkPicture("files-alert-dark");
    tour.type(u"\x1b");
    tour.leastPicture("files-least");
}

}
