#include "trelundo/platform/window/internal/DisplayProbe.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace trelundo {

namespace {

std::string environment(char const* name) {
    auto const* value = std::getenv(name);
    return value ? value : "";
}

/// A connection to who listens at a local socket, -1 when nobody does; `abstract` ones have no file.
int connected(std::string const& path, bool abstract) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() + 2 > sizeof address.sun_path) return -1;
    std::memcpy(address.sun_path + (abstract ? 1 : 0), path.data(), path.size());
    auto const socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socket < 0) return -1;
    auto const length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + path.size() + 1);
    if (::connect(socket, reinterpret_cast<sockaddr const*>(&address), length) == 0) return socket;
    ::close(socket);
    return -1;
}

int connectedToWayland() {
    auto const name = environment("WAYLAND_DISPLAY");
    if (name.empty()) return -1;
    return connected(name.front() == '/' ? name : environment("XDG_RUNTIME_DIR") + "/" + name, false);
}

/// The number in ":0.0" or "unix:0", empty for anything else.
std::string localDisplay(std::string const& display) {
    auto const colon = display.rfind(':');
    if (colon == std::string::npos || (colon != 0 && display.compare(0, colon, "unix") != 0)) return {};
    return display.substr(colon + 1, display.find('.', colon) - colon - 1);
}

int connectedToXServer() {
    auto const number = localDisplay(environment("DISPLAY"));
    if (number.empty()) return -1;
    auto const path = "/tmp/.X11-unix/X" + number;
    auto const socket = connected(path, true);
    return socket >= 0 ? socket : connected(path, false);
}

/// A server on another machine is taken at its word.
bool namesRemoteServer() {
    auto const display = environment("DISPLAY");
    return display.find(':') != std::string::npos && localDisplay(display).empty();
}

} // namespace

DisplayProbe::DisplayProbe() {
    auto const platform = environment("QT_QPA_PLATFORM");
    bool const needsNone =
        !platform.empty() && !platform.starts_with("xcb") && !platform.starts_with("wayland");
    if (!needsNone) socket_ = connectedToWayland();
    if (!needsNone && socket_ < 0) socket_ = connectedToXServer();
    answers_ = needsNone || socket_ >= 0 || namesRemoteServer();
}

DisplayProbe::~DisplayProbe() {
    if (socket_ >= 0) ::close(socket_);
}

} // namespace trelundo
