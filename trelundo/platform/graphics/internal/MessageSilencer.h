#pragma once

#include <QtGlobal>

namespace trelundo {

/// Drops what the graphics library would print, as long as it lives: failures are reported by those who meet
/// them.
class MessageSilencer {
public:
    MessageSilencer()
        : previous_(qInstallMessageHandler(ignore)) {}
    ~MessageSilencer() { qInstallMessageHandler(previous_); }
    MessageSilencer(MessageSilencer const&) = delete;
    MessageSilencer& operator=(MessageSilencer const&) = delete;

private:
    static void ignore(QtMsgType, QMessageLogContext const&, QString const&) {}
    QtMessageHandler previous_;
};

} // namespace trelundo
