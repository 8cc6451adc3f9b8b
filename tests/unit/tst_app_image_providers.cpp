// The image providers that the application gives to its interface.

#include "app_fixture.h"
#include "panel_application.h"
#include "running_app.h"

#include <memory>

#include <dlfcn.h>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::App;

namespace {

/// Each provider that an engine was given, with whether the screens' context was there already.
QStringList given;

} // namespace

// This one stands before the engine's own, and calls it.
void QQmlEngine::addImageProvider(const QString &id, QQmlImageProviderBase *provider)
{
    using Function = void (*)(QQmlEngine *, const QString &, QQmlImageProviderBase *);
    static const auto engines = reinterpret_cast<Function>(
        dlsym(RTLD_NEXT, "_ZN10QQmlEngine16addImageProviderERK7QStringP21QQmlImageProviderBase"));
    given.append(rootContext()->contextProperty(u"FontModel"_s).isValid() ? id + u" late"_s : id);
    engines(this, id, provider);
}

class tst_AppImageProviders : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void inOrder();
};

void tst_AppImageProviders::inOrder()
{
    const AppFixture fixture;
    App app;
    QCOMPARE(runApp(app,
                    [](RunningApp &running) {
                        QVERIFY(running.context->contextProperty(u"FontModel"_s).isValid());
                        // Behind these come those of the controls.
                        QCOMPARE(given.mid(0, 2), (QStringList{u"image_provider"_s, u"cover_provider"_s}));
                    }),
             0);
}

PANEL_TEST_MAIN(tst_AppImageProviders)
#include "tst_app_image_providers.moc"
