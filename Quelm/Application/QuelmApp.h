#pragma once

#include "Quelm/Application/AppDelegate.h"
#include "Quelm/Application/DocumentController.h"

namespace quelm {

/// The application: document windows with their menus, and its end when the last of them closes.
class QuelmApp {
public:
    /// The whole program, from its command line to its exit status.
    static int run(int argc, char** argv);

    /// Needs the one `QApplication`, which must outlive it.
    QuelmApp();

    AppDelegate& appDelegate() { return appDelegate_; }
    DocumentController& documents() { return documents_; }

private:
    void endWhenIdle();

    AppDelegate appDelegate_;
    DocumentController documents_;
};

} // namespace quelm
