#pragma once

#include <QList>
#include <QString>
#include <functional>
#include <vector>

#include "toolkit/form/CValueForms.h"

class CXmlObj;
class QWidget;

/// Where values lie: a document, which is borrowed, and a node of it. An empty path stands for the entry that is told
/// when the rows are walked.
struct stDef_Node
{
    CXmlObj* pDocument = nullptr;
    QString sPath = {};
};

/// One value of a node.
struct stDef_Value
{
    stDef_Value(const char* pszValueKey, const char* pszValueDefault = "") // NOLINT: a key is a value of its group
        : pszKey(pszValueKey), pszDefault(pszValueDefault)
    {}
    /// A value that lies elsewhere than the others of its group.
    stDef_Value(const stDef_Node& stValueNode, const char* pszValueKey, const char* pszValueDefault = "")
        : stNode(stValueNode), pszKey(pszValueKey), pszDefault(pszValueDefault)
    {}
    /// The same value, written to another node than it is read from.
    stDef_Value m_F_o_WrittenTo(const QString& sPath) const
    {
        stDef_Value st = *this;
        st.sWrittenPath = sPath;
        return st;
    }

    stDef_Node stNode = {}; ///< without a document: that of the group
    const char* pszKey;
    const char* pszDefault; ///< of a value that isn't there; "" is 0 to all that is a number
    QString sWrittenPath = {};
};

/// The values of a window whose controls are working copies of documents. Loading and storing walk the same rows in
/// the same order.
class CValueRows
{
public:
    using Show = std::function<void(const QString& sValue)>;
    using Stored = std::function<QString()>;
    /// Which document is written in place of one of the rows'.
    using Substitute = std::function<CXmlObj*(CXmlObj*)>;

    /// Whether a control can show a value.
    using Knows = std::function<bool(const QString& sValue)>;

    /// A value in an odd form. Without `fnStored` it is only shown. A value without a document is no row.
    void m_S_Add(const stDef_Value& stValue, Show fnShow, Stored fnStored);

    template <class Form, class Control>
    requires nsForms::Shows<Form, Control>
    void m_S_Add(const stDef_Value& stValue, Control* pControl)
    {
        Stored fnStored;
        if constexpr (nsForms::Stores<Form, Control>)
            fnStored = [pControl] { return Form::s_F_s_Stored(*pControl); };
        m_S_Add(
            stValue, [pControl](const QString& sValue) { Form::s_S_Show(*pControl, sValue); }, std::move(fnStored));
        if constexpr (nsForms::Knows<Form, Control>) {
            if (stValue.stNode.pDocument)
                vm_arLists.push_back({stValue, pControl, [pControl](const QString& sValue) {
                                          return Form::s_F_b_Knows(*pControl, sValue);
                                      }});
        }
    }

    /// Whether every document that the rows read is open.
    bool m_F_b_CanLoad() const;
    void m_S_Load(const QString& sEntry = {}) const;
    /// Shows in every row what stands for a value that isn't stored.
    void m_S_ShowDefaults() const;
    /// The lists that have no entry for what is stored, in the order of the rows. A value that isn't stored is none.
    QList<QWidget*> m_F_ar_Unknown() const;
    /// Whether every document that the rows would write is open.
    bool m_F_b_CanStore() const;
    /// Writes every row that has a way back, those of disabled controls, too. False and no effect if one of the
    /// documents that would be written is closed.
    bool m_F_b_Store(const QString& sEntry = {}, const Substitute& fnSubstitute = {}) const;

private:
    struct stDef_Row
    {
        stDef_Value stValue;
        Show fnShow;
        Stored fnStored;
    };

    struct stDef_List
    {
        stDef_Value stValue;
        QWidget* pControl;
        Knows fnKnows;
    };

    std::vector<stDef_Row> vm_arRows;
    std::vector<stDef_List> vm_arLists;
};
