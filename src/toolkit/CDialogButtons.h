#pragma once

#include <QDialogButtonBox>

#include "host/Export.h"

class CTextTable;

/// The row of OK and Cancel at the foot of a dialog, in the words of its text table.
class FLEETLINK_EXPORT CDialogButtons : public QDialogButtonBox
{
    Q_OBJECT

public:
    CDialogButtons(QDialog* pDialog, CTextTable& objTexts);
};
