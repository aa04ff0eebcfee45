// A paywall in a Qt Quick scene. usage: quick_host CATALOGUE.storekit PRODUCT...
#include "PaywallItem.h"
#include "Shop.h"

#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QQuickWindow>

#include <cstdio>

int main(int argc, char** argv) {
    QGuiApplication const application(argc, argv);
    auto const shop = Shop::open(argc, argv);
    if (!shop) return std::fprintf(stderr, "%s\n", shop.error().message.c_str()), 2;

    qmlRegisterType<PaywallItem>("Host", 1, 0, "Paywall");
    QQmlApplicationEngine const engine(QUrl("qrc:/Main.qml"));
    if (engine.rootObjects().isEmpty()) return 1;
    auto* const window = qobject_cast<QQuickWindow*>(engine.rootObjects().front());
    auto* const paywall = window->findChild<PaywallItem*>("paywall");

    (*shop)->setClosed([window] { window->close(); });
    (*shop)->openPaywall(paywall->shell().window());
    QGuiApplication::exec();
    return (*shop)->soldProduct().empty() ? 1 : 0;
}
