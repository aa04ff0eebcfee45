#include "trelundo/platform/uikit/views/DeviceProfile.h"

#include <algorithm>
#include <cmath>

namespace trelundo {

namespace {

constexpr auto compact = UIUserInterfaceSizeClass::compact;
constexpr auto regular = UIUserInterfaceSizeClass::regular;

constexpr double smallestTabletSide = 744;    // points
constexpr double smallestRegularHeight = 480; // points

DeviceProfile phone(std::string_view name, CGSize points, double scale, CGSize pixels, UIEdgeInsets portrait,
                    UIEdgeInsets landscape, UIUserInterfaceSizeClass landscapeWidth) {
    return {name,      UIUserInterfaceIdiom::phone,
            points,    scale,
            pixels,    portrait,
            landscape, compact,
            regular,   landscapeWidth,
            compact};
}

DeviceProfile homeButtonPhone(std::string_view name, CGSize points, double scale, CGSize pixels,
                              UIUserInterfaceSizeClass landscapeWidth) {
    return phone(name, points, scale, pixels, {20, 0, 0, 0}, {}, landscapeWidth);
}

/// `cutOut` is the depth of the cut-out's safe area in points: on top upright, on both sides lying.
DeviceProfile cutOutPhone(std::string_view name, CGSize points, double scale, CGSize pixels, double cutOut,
                          UIUserInterfaceSizeClass landscapeWidth) {
    return phone(name, points, scale, pixels, {cutOut, 0, 34, 0}, {0, cutOut, 21, cutOut}, landscapeWidth);
}

DeviceProfile tablet(std::string_view name, CGSize points, UIEdgeInsets insets) {
    return {name,
            UIUserInterfaceIdiom::pad,
            points,
            2,
            {points.width * 2, points.height * 2},
            insets,
            insets,
            regular,
            regular,
            regular,
            regular};
}

DeviceProfile homeButtonTablet(std::string_view name, CGSize points) {
    return tablet(name, points, {20, 0, 0, 0});
}

DeviceProfile buttonlessTablet(std::string_view name, CGSize points) {
    return tablet(name, points, {24, 0, 20, 0});
}

bool isSize(CGSize left, CGSize right, double tolerance) {
    return std::abs(left.width - right.width) < tolerance && std::abs(left.height - right.height) < tolerance;
}

/// Layouts for wide screens are made for tablets and are tall, too: a low window gets those of a phone.
UIUserInterfaceSizeClass widthClass(CGSize size) {
    return std::min(size.width, size.height) < smallestTabletSide ? compact : regular;
}

UIUserInterfaceSizeClass heightClass(CGSize size) {
    return size.height < smallestRegularHeight ? compact : regular;
}

} // namespace

std::span<DeviceProfile const> DeviceProfile::all() {
    static DeviceProfile const profiles[] = {
        homeButtonPhone("phone-320x568", {320, 568}, 2, {640, 1136}, compact),
        homeButtonPhone("phone-375x667", {375, 667}, 2, {750, 1334}, compact),
        homeButtonPhone("phone-414x736", {414, 736}, 3, {1080, 1920}, regular),
        cutOutPhone("phone-375x812", {375, 812}, 3, {1125, 2436}, 44, compact),
        cutOutPhone("phone-375x812-compact", {375, 812}, 3, {1080, 2340}, 50, compact),
        cutOutPhone("phone-414x896", {414, 896}, 2, {828, 1792}, 48, regular),
        cutOutPhone("phone-414x896-3x", {414, 896}, 3, {1242, 2688}, 44, regular),
        cutOutPhone("phone-390x844", {390, 844}, 3, {1170, 2532}, 47, compact),
        cutOutPhone("phone-428x926", {428, 926}, 3, {1284, 2778}, 47, regular),
        cutOutPhone("phone-393x852", {393, 852}, 3, {1179, 2556}, 59, compact),
        cutOutPhone("phone-430x932", {430, 932}, 3, {1290, 2796}, 59, regular),
        cutOutPhone("phone-402x874", {402, 874}, 3, {1206, 2622}, 62, compact),
        cutOutPhone("phone-440x956", {440, 956}, 3, {1320, 2868}, 62, regular),
        homeButtonTablet("tablet-768x1024", {768, 1024}),
        homeButtonTablet("tablet-810x1080", {810, 1080}),
        homeButtonTablet("tablet-834x1112", {834, 1112}),
        buttonlessTablet("tablet-744x1133", {744, 1133}),
        buttonlessTablet("tablet-820x1180", {820, 1180}),
        buttonlessTablet("tablet-834x1194", {834, 1194}),
        buttonlessTablet("tablet-834x1210", {834, 1210}),
        buttonlessTablet("tablet-1024x1366", {1024, 1366}),
        buttonlessTablet("tablet-1032x1376", {1032, 1376}),
    };
    return profiles;
}

DeviceProfile const* DeviceProfile::find(std::string_view name) {
    auto const profiles = all();
    auto const found = std::ranges::find(profiles, name, &DeviceProfile::name);
    return found == profiles.end() ? nullptr : &*found;
}

bool DeviceProfile::hasSize(CGSize size, double tolerance) const {
    return isSize(size, points, tolerance) || isSize(size, {points.height, points.width}, tolerance);
}

DeviceProfile DeviceProfile::resizedTo(CGSize size) const {
    if (hasSize(size, 1)) return *this;
    auto profile = *this;
    profile.points = {std::min(size.width, size.height), std::max(size.width, size.height)};
    profile.nativePixels = {profile.points.width * scale, profile.points.height * scale};
    profile.portraitInsets = profile.landscapeInsets = {};
    profile.portraitHorizontal = profile.landscapeHorizontal = widthClass(profile.points);
    profile.portraitVertical = heightClass(profile.points);
    profile.landscapeVertical = heightClass({profile.points.height, profile.points.width});
    return profile;
}

} // namespace trelundo
