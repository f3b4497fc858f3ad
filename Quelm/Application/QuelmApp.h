#pragma once

#include "Quelm/Application/AppDelegate.h"
#include "Quelm/Application/DocumentController.h"
#include "Quelm/Application/EndSignals.h"
#include "Quelm/Application/InstanceServer.h"
#include "Quelm/Application/WorkRecovery.h"

#include <memory>

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

    /// Keeps unsaved changes from now on, and offers those that an unexpected end left behind.
    void recoverWork();

    /// Does from now on what other programs of this kind are asked for.
    void answerOthers(InstanceSocket socket);

    /// Ends without questions when the system asks for it: unsaved changes stay to be recovered, and the files that are
    /// open return at the next start.
    void followSystem();

    /// Windows with the files; without any, with those that were open when the user quit, or a new document.
    void openWindows(const QStringList& files);

private:
    void endWhenIdle();
    void fulfil(const InstanceRequest& request);
    void endOnSignal(int signal);
    void end(int status);

    AppDelegate appDelegate_;
    DocumentController documents_;
    WorkRecovery recovery_;
    std::unique_ptr<InstanceServer> server_;
    std::unique_ptr<EndSignals> endSignals_;
};

} // namespace quelm
