#pragma once

#include "trelundo/platform/uikit/views/UIScreen.h"

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace trelundo::paywall {

/// What a gallery shows. An empty list stands for the default.
struct GalleryChoice {
    std::vector<std::string> screens;              // every screen
    std::vector<DeviceProfile const*> devices;     // four phones and two tablets
    std::vector<std::string> languages;            // every language of the texts
    std::vector<std::string> tags;                 // without a tag, and those of the first paywall
    std::vector<UIUserInterfaceStyle> appearances; // light
};

/// What the command line asks for, checked as far as it can be without opening a file.
struct Options {
    std::string command;

    std::string screen;                   // class name
    std::optional<std::string> catalogue; // absent: the built-in demonstration catalogue
    std::optional<std::vector<std::string>>
        products; // absent: every auto-renewable subscription, in file order
    int select = 0;
    DeviceProfile const* device = nullptr; // set by parsing
    bool isLandscape = false;
    UIUserInterfaceStyle appearance = UIUserInterfaceStyle::light;
    std::string language = "en";
    std::string source;
    std::string premiumId;
    std::string abTest;
    bool introductoryPriceWasOffered = false;
    std::map<std::string, std::string> discounts;              // offer by product
    std::vector<std::pair<std::string, std::string>> settings; // --set, in order
    std::optional<std::string> appName;
    std::optional<std::string> username;
    bool hasDelegate = true;
    std::optional<std::string> store; // absent: in memory (show: the user's data folder)
    bool canMakePayments = true;
    bool usesFakeClock = false; // fixed time and identifiers
    unsigned seed = 1;
    std::vector<std::string> pictureFolders;

    std::optional<std::string> out;
    std::optional<std::string> script;
    std::optional<std::string> log;
    bool printsJson = false;

    std::string storeAction; // list, approve, decline, clear
    std::string transaction; // of approve and decline

    GalleryChoice gallery;
};

} // namespace trelundo::paywall
