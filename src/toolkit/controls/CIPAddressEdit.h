#pragma once

#include <QLineEdit>

#include "host/Export.h"

/// An edit for an IPv4 address. Takes digits and dots only, sets the dot behind three digits by itself, and turns a
/// number above 255 back. What a document brought stands as it came until it is edited.
class FLEETLINK_EXPORT CIPAddressEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit CIPAddressEdit(QWidget* pParent = nullptr);

private:
    void m_S_OnEdited(const QString& sText);

    qsizetype vm_nLength = 0; ///< of the text before the last edit
};
