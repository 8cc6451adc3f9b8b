// Where the preview of a trial and its corner picker stand, on a colour panel.

#include "customize_geometry_test.h"
#include "panel_application.h"

class tst_CustomizeColour : public CustomizeGeometryTest
{
    Q_OBJECT

public:
    tst_CustomizeColour()
        : CustomizeGeometryTest(u"colour-6"_s)
    {
    }
};

PANEL_TEST_MAIN_WITH_RECORD(tst_CustomizeColour, R"({"profile":"colour-6"})")
#include "tst_customize_colour.moc"
