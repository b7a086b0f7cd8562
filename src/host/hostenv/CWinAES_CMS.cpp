#include "host/hostenv/CWinAES_CMS.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <memory>

#include "host/hostenv/CEnvObj.h"

#ifdef _WIN32
#include "host/Platform.h"
#else
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace {

constexpr int KeySize = 32;
constexpr int NonceSize = 12;
constexpr int TagSize = 16;
constexpr auto KeyFile = "fleetlink.key"_L1;
constexpr auto FormMark = "v1:"_L1;
constexpr auto OwnerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

using Context = std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)>;

/// Bytes that are wiped when they go.
struct st_Secret
{
    QByteArray sBytes;
    ~st_Secret() { OPENSSL_cleanse(sBytes.data(), static_cast<std::size_t>(sBytes.size())); }
};

QString& KeyFolder()
{
    static QString s_sFolder;
    return s_sFolder;
}

QString KeyPath()
{
    const QString sFolder = KeyFolder().isEmpty() ? CAppEnv::s_objEnv.m_F_s_GetConfigFolder() : KeyFolder();
    return sFolder.isEmpty() ? QString() : QDir(sFolder).absoluteFilePath(KeyFile);
}

/// The key, if there is a whole one. Rights wider than the user's own are taken back.
bool ReadKey(const QString& sPath, QByteArray& sKey)
{
    QFile file(sPath);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) // a buffer would keep the key
        return false;
    if (file.permissions() &
        (QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ReadOther | QFileDevice::WriteOther))
        file.setPermissions(OwnerOnly);
    sKey = file.read(KeySize + 1);
    return sKey.size() == KeySize;
}

/// Gives a written file its name, or leaves it alone if there is one of that name: QFile::rename may copy over it.
void PlaceNew(QFile& file, const QString& sPath)
{
#ifdef _WIN32
    file.close();
    MoveFileExW(reinterpret_cast<const wchar_t*>(QDir::toNativeSeparators(file.fileName()).utf16()),
                reinterpret_cast<const wchar_t*>(QDir::toNativeSeparators(sPath).utf16()), MOVEFILE_WRITE_THROUGH);
#else
    // On the disk before anything is stored under it: without its key a password is lost.
    const QByteArray sFrom = QFile::encodeName(file.fileName()), sTo = QFile::encodeName(sPath);
    [[maybe_unused]] const bool bPlaced = fsync(file.handle()) == 0 && link(sFrom.constData(), sTo.constData()) == 0;
#endif
}

/// Makes the key file under another name and links it in only if there is none yet: of two processes that start at
/// once, both go on with the key of the first.
bool MakeKey(const QString& sPath)
{
    st_Secret stKey{QByteArray(KeySize, '\0')};
    if (RAND_bytes(reinterpret_cast<unsigned char*>(stKey.sBytes.data()), KeySize) != 1)
        return false;
    quint64 nUnique = 0;
    if (RAND_bytes(reinterpret_cast<unsigned char*>(&nUnique), sizeof nUnique) != 1)
        return false;
    const QString sTemporary = sPath + u'.' + QString::number(nUnique, 16);
    QFile file(sTemporary);
    if (file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered, OwnerOnly) &&
        file.write(stKey.sBytes) == KeySize)
        PlaceNew(file, sPath);
    file.close();
    QFile::remove(sTemporary);
    return QFile::exists(sPath);
}

bool GetKey(QByteArray& sKey, bool bMake)
{
    const QString sPath = KeyPath();
    if (sPath.isEmpty())
        return false;
    if (QFile::exists(sPath) || !bMake)
        return ReadKey(sPath, sKey);
    return MakeKey(sPath) && ReadKey(sPath, sKey);
}

const unsigned char* Bytes(const QByteArray& s)
{
    return reinterpret_cast<const unsigned char*>(s.constData());
}

unsigned char* Bytes(QByteArray& s)
{
    return reinterpret_cast<unsigned char*>(s.data());
}

} // namespace

void CWinAES_CMS::s_S_SetKeyFolder(const QString& sFolder)
{
    KeyFolder() = sFolder;
}

QString CWinAES_CMS::s_F_s_Encrypt(const QString& sClear)
{
    st_Secret stKey, stClear{sClear.toUtf8()};
    QByteArray sNonce(NonceSize, '\0'), sTag(TagSize, '\0');
    QByteArray sCipher(stClear.sBytes.size(), '\0');
    const Context pContext(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    int nLength = 0, nRest = 0;
    unsigned char arRest[EVP_MAX_BLOCK_LENGTH];
    const bool bDone =
        GetKey(stKey.sBytes, true) && RAND_bytes(Bytes(sNonce), NonceSize) == 1 && pContext &&
        EVP_EncryptInit_ex(pContext.get(), EVP_aes_256_gcm(), nullptr, Bytes(stKey.sBytes), Bytes(sNonce)) == 1 &&
        EVP_EncryptUpdate(pContext.get(), Bytes(sCipher), &nLength, Bytes(std::as_const(stClear.sBytes)),
                          static_cast<int>(stClear.sBytes.size())) == 1 &&
        EVP_EncryptFinal_ex(pContext.get(), arRest, &nRest) == 1 &&
        EVP_CIPHER_CTX_ctrl(pContext.get(), EVP_CTRL_GCM_GET_TAG, TagSize, sTag.data()) == 1;
    return bDone ? FormMark + QString::fromLatin1((sNonce + sCipher + sTag).toBase64()) : QString();
}

QString CWinAES_CMS::s_F_s_Decrypt(const QString& sStored)
{
    if (!sStored.startsWith(FormMark))
        return {};
    const auto decoded = QByteArray::fromBase64Encoding(sStored.mid(FormMark.size()).toLatin1(),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    const QByteArray& sAll = decoded.decoded;
    const auto nCipher = sAll.size() - NonceSize - TagSize;
    if (!decoded || nCipher < 0)
        return {};
    QByteArray sTag = sAll.right(TagSize);
    st_Secret stKey, stClear{QByteArray(nCipher, '\0')};
    const Context pContext(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    int nLength = 0, nRest = 0;
    unsigned char arRest[EVP_MAX_BLOCK_LENGTH];
    const bool bDone =
        GetKey(stKey.sBytes, false) && pContext &&
        EVP_DecryptInit_ex(pContext.get(), EVP_aes_256_gcm(), nullptr, Bytes(stKey.sBytes), Bytes(sAll)) == 1 &&
        EVP_DecryptUpdate(pContext.get(), Bytes(stClear.sBytes), &nLength, Bytes(sAll) + NonceSize,
                          static_cast<int>(nCipher)) == 1 &&
        EVP_CIPHER_CTX_ctrl(pContext.get(), EVP_CTRL_GCM_SET_TAG, TagSize, sTag.data()) == 1 &&
        EVP_DecryptFinal_ex(pContext.get(), arRest, &nRest) == 1;
    return bDone ? QString::fromUtf8(stClear.sBytes) : QString();
}
