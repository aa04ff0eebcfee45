// A paywall in a window of widgets, between others. usage: widgets_host CATALOGUE.storekit PRODUCT...
#include "PaywallAccessibility.h"
#include "PaywallWidget.h"
#include "Shop.h"

#include <QApplication>
#include <QLabel>
#include <QVBoxLayout>

#include <cstdio>

int main(int argc, char** argv) {
    QApplication const application(argc, argv);
    auto const shop = Shop::open(argc, argv);
    if (!shop) return std::fprintf(stderr, "%s\n", shop.error().message.c_str()), 2;
    installPaywallAccessibility();

    QWidget window;
    window.setWindowTitle("Widgets host");
    auto* const layout = new QVBoxLayout(&window);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* const heading = new QLabel("The host's own heading");
    heading->setFixedHeight(40);
    layout->addWidget(heading);
    auto* const paywall = new PaywallWidget;
    layout->addWidget(paywall, 1);
    window.show();

    (*shop)->setClosed([&window] { window.close(); });
    (*shop)->openPaywall(paywall->shell().window());
    QApplication::exec();
    return (*shop)->soldProduct().empty() ? 1 : 0;
}
