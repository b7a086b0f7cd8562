#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>
#include <map>

#include "live/stDef_ChannelKey.h"

class CEnvObj;
class CRecorderStore;
class CRecorderWatch;
class CXmlObj;
struct stDef_Recorder;

/// What cameras are called. Their recorders tell it: each whose names somebody wants is asked beside the window, when
/// it comes within reach; what it told last is kept in the library's cache for when it is away. GUI thread.
class CCameraNames : public QObject
{
    Q_OBJECT

public:
    /// All are borrowed.
    CCameraNames(CEnvObj* pEnv, const CRecorderStore* pStore, const CRecorderWatch* pWatch);
    ~CCameraNames() override;

    /// Takes over the list. What is known of a recorder stays unless its address changed.
    void m_S_SetRecorders(const QList<stDef_Recorder>& arRecorders);
    /// A camera as the operator knows it: by name and number, or by number alone. It may hold anything but line ends.
    QString m_F_s_Label(const stDef_ChannelKey& stKey);
    /// The recorder's settings may have changed.
    void m_S_AskAgain(int nNvrID);

    /// A name from outside without what would break or turn round the line that it stands in.
    static QString s_F_s_OneLine(const QString& sName);

Q_SIGNALS:
    void S_Changed(int nNvrID);

private:
    struct stDef_Known;
    struct stDef_Answer;

    void m_S_Load(int nNvrID, stDef_Known& stKnown) const;
    void m_S_Save(int nNvrID, const stDef_Known& stKnown) const;
    void m_S_AskDue();
    void m_S_Ask(int nNvrID, stDef_Known& stKnown);
    void m_S_Take(int nNvrID, const stDef_Answer& stAnswer);

    CEnvObj* vm_pEnv;
    const CRecorderStore* vm_pStore;
    const CRecorderWatch* vm_pWatch;
    std::map<int, stDef_Known> vm_mapKnown; ///< by number of the recorder
    QTimer vm_objSoon;
};
