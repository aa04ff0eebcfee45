#pragma once

#include <trelundo/Premium.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// Sells the plans of a catalogue from the embedded store, on one paywall. Tells on standard output what
/// happens.
class Shop {
public:
    /// Opens the catalogue of `argv[1]` for the products behind it.
    static trelundo::Result<std::unique_ptr<Shop>> open(int argc, char** argv);
    ~Shop();

    /// Shows the paywall in `window` as soon as the products are there.
    void openPaywall(trelundo::UIWindow& window);
    /// `closed` is called once the paywall has gone.
    void setClosed(std::function<void()> closed) { closed_ = std::move(closed); }
    /// What was bought; empty: nothing.
    std::string soldProduct() const;

private:
    class Host;
    Shop(std::unique_ptr<trelundo::SandboxStore> store, std::vector<std::string> products);

    std::unique_ptr<trelundo::SandboxStore> store_;
    std::vector<std::string> products_;
    trelundo::Ref<Host> host_;
    trelundo::Ref<trelundo::NotificationCenter::Token> dismissal_;
    std::function<void()> closed_;
};
