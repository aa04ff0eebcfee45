// Loads a plug-in, buys with it and unloads it, twice. usage: loader PLUGIN CATALOGUE
#include <cstdio>
#include <dlfcn.h>

namespace {

bool buyOnce(char const* path, char const* catalogue) {
    void* const plugin = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (!plugin) return std::fprintf(stderr, "%s\n", dlerror()), false;
    auto const buy = reinterpret_cast<int (*)(char const*)>(dlsym(plugin, "buy"));
    bool const isSold = buy && buy(catalogue) == 0;
    dlclose(plugin);
    bool const isLoaded = dlopen(path, RTLD_NOW | RTLD_NOLOAD);
    std::printf("%s, %s\n", isSold ? "sold" : "not sold", isLoaded ? "stays loaded" : "unloaded");
    return isSold;
}

} // namespace

int main(int argc, char** argv) {
    return argc == 3 && buyOnce(argv[1], argv[2]) && buyOnce(argv[1], argv[2]) ? 0 : 1;
}
