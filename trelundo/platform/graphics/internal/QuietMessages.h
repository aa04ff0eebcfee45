#pragma once

#include <QtGlobal>

namespace trelundo {

/// Drops what the graphics library would print, as long as it lives: failures are reported by those who meet
/// them.
class QuietMessages {
public:
    QuietMessages()
        : previous_(qInstallMessageHandler(ignore)) {}
    ~QuietMessages() { qInstallMessageHandler(previous_); }
    QuietMessages(QuietMessages const&) = delete;
    QuietMessages& operator=(QuietMessages const&) = delete;

private:
    static void ignore(QtMsgType, QMessageLogContext const&, QString const&) {}
    QtMessageHandler previous_;
};

} // namespace trelundo
