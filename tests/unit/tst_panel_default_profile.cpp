// A record that names no known profile: the device starts as the default one.

#include "panel_application.h"
#include "panel_view.h"

#include <device.h>

using namespace Qt::StringLiterals;
using lindenreed::device::Device;

class tst_PanelDefaultProfile : public QObject
{
    Q_OBJECT

private slots:
    void defaultProfile();
};

void tst_PanelDefaultProfile::defaultProfile()
{
    QCOMPARE(Device::instance()->profile.name, u"grey-6"_s);
    QCOMPARE(panel_view::snapshot().header.width, 758U);
    QCOMPARE(Device::instance()->previousOrientation, std::optional<int>(1)); // what is right is used
}

PANEL_TEST_MAIN_WITH_RECORD(tst_PanelDefaultProfile, R"({"profile": "brown-7", "orientation": 1})")
#include "tst_panel_default_profile.moc"
