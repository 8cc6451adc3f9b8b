// Makes the control set known to a QML engine.

#include "icon_theme.h"

#include <QQmlEngine>
#include <QQmlEngineExtensionPlugin>

extern void qml_register_types_com_lindenreed_controls();

class LindenreedControlsPlugin : public QQmlEngineExtensionPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QQmlEngineExtensionInterface_iid)

public:
    explicit LindenreedControlsPlugin(QObject *parent = nullptr)
        : QQmlEngineExtensionPlugin(parent)
    {
        // Without a reference the linker drops the registration of the types.
        volatile auto registration = &qml_register_types_com_lindenreed_controls;
        Q_UNUSED(registration)
    }

    void initializeEngine(QQmlEngine *engine, const char *uri) override
    {
        Q_UNUSED(uri)
        // Icons come with the controls: no program has to add them.
        engine->addImageProvider(QStringLiteral("resource"), new lindenreed::device::IconProvider(false));
        engine->addImageProvider(QStringLiteral("resource_inv"), new lindenreed::device::IconProvider(true));
    }
};

#include "plugin.moc"
