// Where the preview of a trial and its corner picker stand, on a grey panel.

#include "customize_geometry_test.h"
#include "panel_application.h"

class tst_CustomizeGrey : public CustomizeGeometryTest
{
    Q_OBJECT

public:
    tst_CustomizeGrey()
        : CustomizeGeometryTest(u"grey-6"_s)
    {
    }
};

PANEL_TEST_MAIN(tst_CustomizeGrey)
#include "tst_customize_grey.moc"
