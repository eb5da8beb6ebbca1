// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "Gallery.h"
#include "Options.h"
#include "appkit/NSApplication.h"
#include "kit/Palette.h"
#include "kit/SidebarRows.h"
#include "pages/Pages.h"
#include "shell/BRApplication.h"
#include "support/DefaultsFolder.h"
#include "support/HeadlessScreen.h"
#include "support/Strings.h"

namespace gallery {

/// The gallery on a screen in memory, with settings of its own.
class OpenGallery {
public:
    OpenGallery()
    {
        screen.window().orderOut(nullptr);
        start();
    }
    ~OpenGallery()
    {
        stop();
        setDark(false);
    }

    /// Closes it and opens it again, as on another day.
    void restart()
    {
        stop();
        folder.restart();
        start();
    }
    std::string page() const { return pages()[controller->pageIndex()].name; }
    void showPage(std::string_view name)
    {
        for (std::size_t i = 0; i < pages().size(); ++i) {
            if (name == pages()[i].name)
                controller->showPage(i);
        }
        screen.process();
    }
    void type(std::u16string_view text) { screen.keyboard().type(text); }
    void press(char16_t key, brindle::NSEventModifierFlags flags = 0)
    {
        screen.keyboard().press(key, flags);
    }
    /// Answers the names that the sidebar lists, headings in brackets.
    std::vector<std::string> listed() const
    {
        std::vector<std::string> names;
        const auto list = controller->sidebar()->list();
        for (brindle::NSInteger row = 0; row < list->numberOfRows(); ++row) {
            const auto cell
                = brindle::cast<SidebarCell>(list->viewAtColumn_row_makeIfNecessary(0, row, true));
            names.push_back(cell->row_.page < 0 ? "[" + cell->row_.name + "]" : cell->row_.name);
        }
        return names;
    }
    brindle::Ref<brindle::NSResponder> focus() const
    {
        return controller->window()->firstResponder();
    }

    brindle::Ref<brindle::NSApplication> application
        = brindle::BRApplication::cls().sharedApplication();
    brindle::test::DefaultsFolder folder;
    brindle::HeadlessScreen screen { 1280, 800 };
    brindle::Ref<GalleryController> controller;

private:
    void start()
    {
        readOptions();
        controller = brindle::make<GalleryController>();
        application->setDelegate(controller.get());
        controller->open();
        screen.process();
    }
    void stop()
    {
        application->setDelegate(nullptr);
        controller->page()->removeFromSuperview(); // it closes the windows that it opened
        controller->window()->setDelegate(nullptr);
        controller->window()->close();
        controller = nullptr;
    }
};

}
