#include "toolkit/controls/WrongMark.h"

#include <QLineEdit>

namespace {

/// A fifth of red on the ground that it has, so that the text stays readable in light and in dark.
QColor Tinted(const QColor& objGround)
{
    constexpr int Red = 51, Others = 204; // of 255
    return {(objGround.red() * Others + 255 * Red) / 255, objGround.green() * Others / 255,
            objGround.blue() * Others / 255};
}

} // namespace

void nsWrongMark::Set(QLineEdit* pEdit)
{
    pEdit->setPalette({}); // a mark that stands is not deepened
    QPalette objMarked = pEdit->palette();
    for (const auto nGroup : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        objMarked.setColor(nGroup, QPalette::Base, Tinted(objMarked.color(nGroup, QPalette::Base)));
    pEdit->setPalette(objMarked);
    QObject::connect(
        pEdit, &QLineEdit::textChanged, pEdit, [pEdit] { pEdit->setPalette({}); }, Qt::SingleShotConnection);
}
