// The list of fonts where the device names no font of its own.

#include "font_model.h"

#include <slateview_testing.h>

#include <QTest>

using namespace Qt::StringLiterals;
using lindenreed::device::DeviceForTest;
using lindenreed::picture_stand::FontModel;

class tst_FontModelWithoutFonts : public QObject
{
    Q_OBJECT

private slots:
    void noDefaultFont();
};

void tst_FontModelWithoutFonts::noDefaultFont()
{
    const DeviceForTest device; // without windows there are neither fonts nor a default one
    FontModel model;
    model.loadFonts();
    QCOMPARE(model.rowCount(), 1);
    QCOMPARE(model.data(model.index(0), FontModel::TitleRole).toString(), u"default"_s);
    QCOMPARE(model.data(model.index(0), FontModel::FamilyNameRole), QVariant(QString()));
    QCOMPARE(model.getFontFamilyByName(u"default"_s), QString());
    QCOMPARE(model.getFontFamilyByName(u"A"_s), u"A"_s);
}

QTEST_GUILESS_MAIN(tst_FontModelWithoutFonts)
#include "tst_font_model_without_fonts.moc"
