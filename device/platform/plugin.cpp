// Entry of the platform plug-in.

#include "integration.h"

#include <qpa/qplatformintegrationplugin.h>

class SlatePlatformPlugin : public QPlatformIntegrationPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QPlatformIntegrationFactoryInterface_iid FILE "lindenreed2.json")

public:
    QPlatformIntegration *create(const QString &system, const QStringList &parameters) override
    {
        Q_UNUSED(parameters);
        if (system.compare(QLatin1String("lindenreed2"), Qt::CaseInsensitive) != 0)
            return nullptr;
        return new lindenreed::device::Integration;
    }
};

#include "plugin.moc"
