// A paywall in a program that has a loop of its own, here of SDL: hand input over, call frame() when it is
// due, copy the pixels that changed. usage: sdl_host CATALOGUE.storekit PRODUCT...
#include "Shop.h"

#include <trelundo/Window.h>

#include <SDL.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>

using namespace trelundo;

namespace {

constexpr int width = 390, height = 844; // points; SDL's windows and mouse are measured in them
constexpr int mouse = 0;                 // the id of its finger
constexpr double pointsPerWheelStep = 40;
constexpr double longestWait = 10; // seconds

/// The event that ends the loop's waiting. SDL lets any thread push one.
void wakeUp() {
    SDL_Event event{};
    event.type = SDL_USEREVENT;
    SDL_PushEvent(&event);
}

std::optional<UIWindow::Key> keyOf(SDL_KeyboardEvent const& event) {
    switch (event.keysym.sym) {
    case SDLK_RETURN:
        return UIWindow::Key::returnKey;
    case SDLK_ESCAPE:
        return UIWindow::Key::escape;
    case SDLK_SPACE:
        return UIWindow::Key::space;
    case SDLK_TAB:
        return event.keysym.mod & KMOD_SHIFT ? UIWindow::Key::backtab : UIWindow::Key::tab;
    default:
        return std::nullopt;
    }
}

void handOver(EmbeddedShell& shell, SDL_Event const& event) {
    auto const pressed = CGPoint{double(event.button.x), double(event.button.y)};
    switch (event.type) {
    case SDL_MOUSEBUTTONDOWN:
        return shell.touchBegan(mouse, pressed);
    case SDL_MOUSEMOTION:
        return shell.touchMoved(mouse, {double(event.motion.x), double(event.motion.y)});
    case SDL_MOUSEBUTTONUP:
        return shell.touchEnded(mouse, pressed);
    case SDL_MOUSEWHEEL: {
        int x = 0, y = 0;
        SDL_GetMouseState(&x, &y);
        shell.scroll({double(x), double(y)}, event.wheel.x * pointsPerWheelStep,
                     -event.wheel.y * pointsPerWheelStep);
        return;
    }
    case SDL_KEYDOWN:
        if (auto const key = keyOf(event.key)) shell.keyPressed(*key);
        return;
    case SDL_WINDOWEVENT:
        if (event.window.event == SDL_WINDOWEVENT_SIZE_CHANGED)
            shell.setScreen({.size = {double(event.window.data1), double(event.window.data2)}});
        return;
    default:
        return;
    }
}

void show(SDL_Window* window, Surface const& pixels) {
    auto* const target = SDL_GetWindowSurface(window);
    auto* const source = SDL_CreateRGBSurfaceWithFormatFrom(const_cast<std::uint8_t*>(pixels.bytes()),
                                                            pixels.pixelWidth(), pixels.pixelHeight(), 32,
                                                            pixels.bytesPerLine(), SDL_PIXELFORMAT_ARGB8888);
    SDL_SetSurfaceBlendMode(source, SDL_BLENDMODE_NONE);
    SDL_BlitSurface(source, nullptr, target, nullptr);
    SDL_FreeSurface(source);
    SDL_UpdateWindowSurface(window);
}

bool isExposure(SDL_Event const& event) {
    return event.type == SDL_WINDOWEVENT && event.window.event == SDL_WINDOWEVENT_EXPOSED;
}

/// What the loop has to know of the events that it has handed over.
struct Heard {
    bool isExposed = false;
    bool isClosed = false;
};

/// Waits for input or until the next frame is due.
Heard handleEvents(EmbeddedShell& shell, double seconds) {
    Heard heard;
    SDL_Event event;
    if (!SDL_WaitEventTimeout(&event, int(std::ceil(std::min(seconds, longestWait) * 1000)))) return heard;
    do {
        handOver(shell, event);
        heard.isExposed = heard.isExposed || isExposure(event);
        heard.isClosed = heard.isClosed || event.type == SDL_QUIT;
    } while (SDL_PollEvent(&event));
    return heard;
}

int sell(Shop& shop, SDL_Window* window) {
    EmbeddedShell shell({.screen = {.size = {width, height}}, .wakeUp = wakeUp});
    bool isOpen = true;
    shop.setClosed([&] { isOpen = false; });
    shop.openPaywall(shell.window());
    Heard heard;
    while (isOpen && !heard.isClosed) {
        auto const frame = shell.frame();
        if (heard.isExposed || !frame.dirty.empty()) show(window, shell.pixels());
        if (isOpen) heard = handleEvents(shell, frame.next);
    }
    return shop.soldProduct().empty();
}

} // namespace

int main(int argc, char** argv) {
    auto const shop = Shop::open(argc, argv);
    if (!shop) return std::fprintf(stderr, "%s\n", shop.error().message.c_str()), 2;
    if (SDL_Init(SDL_INIT_VIDEO) != 0) return std::fprintf(stderr, "%s\n", SDL_GetError()), 1;
    auto* const window = SDL_CreateWindow("SDL host", 0, 0, width, height, SDL_WINDOW_RESIZABLE);
    auto const status = sell(**shop, window);
    SDL_DestroyWindow(window);
    SDL_Quit();
    return status;
}
