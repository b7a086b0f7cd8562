#include "host/hostenv/CEnvObj.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <cstring>
#include <mutex>

#include "host/Platform.h"
#include "host/hostenv/CLangXMLObj.h"
#include "host/hostenv/CShmSegment.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto SysXmlFile = "System.xml"_L1;
constexpr int MaxDamaged = 99;
constexpr auto EmptySysXml = "<root><NVR/></root>"_L1;
constexpr auto OwnerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr int MaxInstance = 64;
constexpr auto DefaultInstance = "cms"; // the beginning of those that are made of a folder, too
constexpr int FolderMark = 16;          // hexadecimal digits

QByteArray Cleaned(const QByteArray& sInstance)
{
    QByteArray sClean;
    for (const char c : sInstance.left(MaxInstance))
        sClean += (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' ? c : '_';
    return sClean;
}

/// The instance that was given; empty if none was.
QByteArray& GivenInstance()
{
    static QByteArray s_sInstance = Cleaned(qgetenv("FLEETLINK_INSTANCE"));
    return s_sInstance;
}

/// Moves a document that nobody can read out of the way, for somebody to look at: it may be all that is left of a long
/// list. Returns its new path; empty if it is still where it was.
QString KeepAside(const QDir& dir)
{
    QString sName = u"System.damaged.xml"_s;
    for (int i = 2; dir.exists(sName) && i <= MaxDamaged; ++i)
        sName = u"System.damaged.%1.xml"_s.arg(i);
    const bool bMoved = !dir.exists(sName) && QFile::rename(dir.filePath(SysXmlFile), dir.filePath(sName));
    return bMoved ? QDir::toNativeSeparators(dir.absoluteFilePath(sName)) : QString();
}

/// Loads the document or begins a new one; false if neither works.
bool LoadSysXML(const QDir& dir, CXmlObj& xmlSys, QString& sDamaged)
{
    const QString sFile = dir.absoluteFilePath(SysXmlFile);
    if (QFile::exists(sFile)) {
        QFile objFile(sFile);
        if (!Platform::s_F_b_OpenPlain(objFile))
            return false; // not damaged: it may be readable again tomorrow
        if (xmlSys.m_F_b_LoadXMLFile(sFile))
            return true;
        sDamaged = KeepAside(dir);
        if (sDamaged.isEmpty())
            return false;
    }
    return xmlSys.m_F_b_LoadXML(EmptySysXml) && xmlSys.m_F_b_Save(sFile);
}

} // namespace

struct CEnvObj::st_Impl
{
    CXmlObj xmlSys;
    CLangXMLObj xmlLang;
    QString sFolder;
    QString sDamaged;
    QByteArray sInstance = DefaultInstance; ///< unless one is given
    std::mutex objSegmentLock;              ///< of making it
    CShmSegment objSegment;
    nsCMS::stDef_SYS_INFO stOwn{}; ///< stands in where there is no shared memory

    st_Impl() { xmlSys.m_F_b_LoadXML(EmptySysXml); }
};

CEnvObj::CEnvObj() : vm_pImpl(std::make_unique<st_Impl>()) {}

CEnvObj::~CEnvObj() = default;

CXmlObj* CEnvObj::m_F_p_GetMemSysXML()
{
    return &vm_pImpl->xmlSys;
}

nsCMS::stDef_SYS_INFO* CEnvObj::m_F_p_GetShmSystem(bool bCreate)
{
    const std::lock_guard lock(vm_pImpl->objSegmentLock); // a record backup asks on its own thread
    constexpr std::size_t Size = sizeof(nsCMS::stDef_SYS_INFO);
    CShmSegment& objSegment = vm_pImpl->objSegment;
    if (!objSegment.m_F_p_Data()) {
        const std::string sName = CShmSegment::s_F_s_Prefix(m_F_s_Instance().toStdString()) + "sys";
        const bool bOwned = bCreate && objSegment.m_F_n_Own(sName, Size, true) != CShmSegment::emDef_Open::Failed;
        if (bOwned ? objSegment.m_F_b_Commit(Size) : objSegment.m_F_b_OpenCopy(sName, Size)) {
            if (bOwned) // what a killed host left may be the folder of another installation
                std::memcpy(objSegment.m_F_p_Data(), &vm_pImpl->stOwn, Size);
        } else {
            objSegment.m_S_Close();
            return &vm_pImpl->stOwn;
        }
    }
    return reinterpret_cast<nsCMS::stDef_SYS_INFO*>(objSegment.m_F_p_Data());
}

QString CEnvObj::m_F_s_GetConfigFolder() const
{
    return vm_pImpl->sFolder;
}

int CEnvObj::m_F_n_LoadString(const QString& sKey, QString& sOut, const QString& sDefault) const
{
    return vm_pImpl->xmlLang.m_F_n_GetLangStr(sKey, sOut, sDefault);
}

bool CEnvObj::m_F_b_Init(const QString& sConfigFolder)
{
    if (sConfigFolder.isEmpty() || !QDir().mkpath(sConfigFolder))
        return false;
    const QDir dir(sConfigFolder);
    QFile::setPermissions(dir.absolutePath(), OwnerOnly | QFileDevice::ExeOwner);
    CXmlObj xmlSys;
    QString sDamaged;
    if (!LoadSysXML(dir, xmlSys, sDamaged))
        return false;
    QFile::setPermissions(dir.absoluteFilePath(SysXmlFile), OwnerOnly);
    vm_pImpl->xmlSys = std::move(xmlSys);
    vm_pImpl->sDamaged = sDamaged;
    vm_pImpl->sFolder = QDir::toNativeSeparators(dir.absolutePath()) + QDir::separator();
    m_S_MoveTo(s_F_s_InstanceOf(sConfigFolder));
    return true;
}

QString CEnvObj::m_F_s_DamagedSysXML() const
{
    return vm_pImpl->sDamaged;
}

bool CEnvObj::m_F_b_SaveSysXML()
{
    if (vm_pImpl->sFolder.isEmpty() || !vm_pImpl->xmlSys.m_F_b_Save(vm_pImpl->sFolder + SysXmlFile))
        return false;
    QFile::setPermissions(vm_pImpl->sFolder + SysXmlFile, OwnerOnly); // some file systems have none: no failure
    return true;
}

bool CEnvObj::m_F_b_SetLangFolder(const QString& sFolder)
{
    nsCMS::stDef_SYS_INFO& stInfo = *m_F_p_GetShmSystem(true);
    QString sStored = QDir::toNativeSeparators(sFolder);
    if (!sStored.endsWith(QDir::separator()))
        sStored += QDir::separator();
    const std::size_t nBytes = static_cast<std::size_t>(sStored.size()) * sizeof(char16_t);
    if (nBytes + sizeof(char16_t) > sizeof stInfo.arLangFolder)
        return false;
    std::memset(stInfo.arLangFolder, 0, sizeof stInfo.arLangFolder);
    std::memcpy(stInfo.arLangFolder, sStored.utf16(), nBytes);
    return true;
}

QString CEnvObj::m_F_s_GetLangFolder()
{
    // The field stands at an odd position and need not be terminated: both forbid a pointer to its characters.
    char16_t arText[sizeof(nsCMS::stDef_SYS_INFO::arLangFolder) / sizeof(char16_t)];
    std::memcpy(arText, m_F_p_GetShmSystem(true)->arLangFolder, sizeof arText);
    qsizetype nLength = 0;
    while (nLength < qsizetype(std::size(arText)) && arText[nLength])
        ++nLength;
    return QString::fromUtf16(arText, nLength);
}

bool CEnvObj::m_F_b_LoadHostLanguage(const QString& sFile)
{
    return vm_pImpl->xmlLang.m_F_b_LoadXMLFile(sFile);
}

/// The record of another instance is another one; what was set in the former goes along.
void CEnvObj::m_S_MoveTo(const QByteArray& sInstance)
{
    const QByteArray sBefore = m_F_s_Instance();
    vm_pImpl->sInstance = sInstance;
    if (!vm_pImpl->objSegment.m_F_p_Data() || m_F_s_Instance() == sBefore)
        return;
    std::memcpy(&vm_pImpl->stOwn, vm_pImpl->objSegment.m_F_p_Data(), sizeof vm_pImpl->stOwn);
    vm_pImpl->objSegment.m_S_Close();
}

QByteArray CEnvObj::m_F_s_Instance() const
{
    return GivenInstance().isEmpty() ? vm_pImpl->sInstance : GivenInstance();
}

void CEnvObj::s_S_SetInstance(const QByteArray& sInstance)
{
    GivenInstance() = Cleaned(sInstance);
}

QByteArray CEnvObj::s_F_s_Instance()
{
    return CAppEnv::s_objEnv.m_F_s_Instance();
}

QByteArray CEnvObj::s_F_s_InstanceOf(const QString& sConfigFolder)
{
    const QByteArray sPath = QFileInfo(sConfigFolder).canonicalFilePath().toUtf8();
    return DefaultInstance + "-"_ba +
           QCryptographicHash::hash(sPath, QCryptographicHash::Sha256).toHex().left(FolderMark);
}

int CEnvObj::s_F_n_RemoveStaleShm()
{
    const QByteArray& sGiven = GivenInstance();
    return CShmSegment::s_F_n_RemoveStale(sGiven.isEmpty() ? CShmSegment::s_F_s_UserPrefix() + DefaultInstance
                                                           : CShmSegment::s_F_s_Prefix(sGiven.toStdString()));
}

CEnvObj CAppEnv::s_objEnv;
