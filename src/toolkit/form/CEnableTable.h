#pragma once

#include <QList>
#include <QObject>
#include <functional>
#include <vector>

#include "host/Export.h"

class QCheckBox;
class QWidget;

/// What a check box enables. The rules run in their order when a page opens, and each again when its box is clicked.
class FLEETLINK_EXPORT CEnableTable : public QObject
{
public:
    using Extra = std::function<void(bool bChecked)>;

    using QObject::QObject;

    /// While the box is checked, `arOn` are enabled and `arOff` are disabled; else the other way round. `fnExtra` does
    /// what is to be done beyond that.
    void m_S_Add(QCheckBox* pBox, const QList<QWidget*>& arOn, const QList<QWidget*>& arOff = {}, Extra fnExtra = {});
    void m_S_Run() const;

private:
    struct stDef_Rule
    {
        QCheckBox* pBox;
        QList<QWidget*> arOn;
        QList<QWidget*> arOff;
        Extra fnExtra;
    };

    static void s_S_Run(const stDef_Rule& stRule);

    std::vector<stDef_Rule> vm_arRules;
};
