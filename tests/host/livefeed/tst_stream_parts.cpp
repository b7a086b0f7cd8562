#include <QByteArrayList>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <vector>

#include "host/hostenv/CShmRingReader.h"
#include "host/livefeed/CAccessUnit.h"
#include "host/livefeed/CPacketSink.h"
#include "host/livefeed/CParameterSets.h"
#include "host/livefeed/CRingCodec.h"
#include "host/livefeed/CStreamUrl.h"
#include "support/Files.h"
#include "support/Table.h"

extern "C" {
#include <libavformat/avformat.h>
}

namespace {

TEST(StreamUrl, TellsAccountFromHostAndRefusesWhatHasNone)
{
    for (const stDef_TableRow& row : ReadTable("urls.txt", 3)) {
        SCOPED_TRACE(row[0]);
        CStreamUrl objUrl;
        ASSERT_EQ(objUrl.m_F_b_Parse(row[0]), !row[2].empty());
        if (row[2].empty())
            continue;
        EXPECT_EQ(objUrl.m_F_s_Account(), row[1]);
        EXPECT_EQ(objUrl.m_F_s_Host(), row[0].find('[') == row[0].npos ? "h" : "fe80::1");
        EXPECT_EQ(objUrl.m_F_s_For("10.0.0.9"), row[2]);
    }
    CStreamUrl objUrl;
    ASSERT_TRUE(objUrl.m_F_b_Parse("rtsp://u:p@h:1/stream/CH0"));
    objUrl.m_S_SetPort(80);
    EXPECT_EQ(objUrl.m_F_s_For("fe80::1"), "rtsp://u:p@[fe80::1]:80/stream/CH0");
}

/// One key frame as the network library would hand it over.
std::vector<std::uint8_t> KeyFrame(int nWidth, int nHeight, const std::string& sEnding)
{
    const QByteArray sKey = ReadFile(QString(FIXTURE_FOLDER "/key-%1x%2.").arg(nWidth).arg(nHeight) + sEnding.c_str());
    return {sKey.begin(), sKey.end()};
}

TEST(ParameterSets, AreTakenFromKeyFramesOfEachCodec)
{
    using enum CParameterSets::emDef_Taken;
    const struct
    {
        const char* pEnding;
        AVCodecID nAv;
        emDef_RingCodec nCodec;
        bool bSets;
    } arRows[] = {
        {"h264", AV_CODEC_ID_H264, emDef_RingCodec::H264, true},
        {"h265", AV_CODEC_ID_HEVC, emDef_RingCodec::H265, true},
        {"m4v", AV_CODEC_ID_MPEG4, emDef_RingCodec::MPEG4, true},
        {"mjpeg", AV_CODEC_ID_MJPEG, emDef_RingCodec::MJPEG, false},
    };
    for (const auto& row : arRows) {
        SCOPED_TRACE(row.pEnding);
        EXPECT_EQ(CRingCodec::s_F_n_FromAv(row.nAv), row.nCodec);
        st_RingParam stParam;
        stParam.nCodec = row.nCodec;
        for (const auto& [nWidth, nHeight] : {std::pair{640, 368}, {320, 192}}) {
            const auto arKey = KeyFrame(nWidth, nHeight, row.pEnding);
            ASSERT_FALSE(arKey.empty());
            const st_RingParam stBefore = stParam;
            EXPECT_EQ(CParameterSets::s_F_n_Take(stParam, arKey.data(), 6), Nothing) << "no whole group";
            EXPECT_EQ(stParam.arExtra, stBefore.arExtra);
            EXPECT_EQ(CParameterSets::s_F_n_Take(stParam, arKey.data(), arKey.size()), row.bSets ? New : Nothing);
            EXPECT_EQ(CParameterSets::s_F_n_Take(stParam, arKey.data(), arKey.size()), Nothing) << "nothing new";
            EXPECT_EQ(stParam.nExtraSize > 0, row.bSets);
            CParameterSets::s_S_FindSize(stParam, arKey.data(), arKey.size());
            EXPECT_EQ(std::pair(stParam.nWidth, stParam.nHeight), std::pair(nWidth, nHeight));
        }
    }
    EXPECT_EQ(CRingCodec::s_F_n_FromAv(AV_CODEC_ID_OPUS), emDef_RingCodec::None);
}

std::vector<std::uint8_t> operator+(std::vector<std::uint8_t> arFirst, const std::vector<std::uint8_t>& arSecond)
{
    arFirst.insert(arFirst.end(), arSecond.begin(), arSecond.end());
    return arFirst;
}

/// A stream of H.265 whose session description tells those extra bytes.
struct stDef_Described
{
    AVFormatContext* pFormat = avformat_alloc_context();
    AVStream* pStream = avformat_new_stream(pFormat, nullptr);

    explicit stDef_Described(const std::vector<std::uint8_t>& arExtra)
    {
        AVCodecParameters& stCodec = *pStream->codecpar;
        stCodec.codec_type = AVMEDIA_TYPE_VIDEO;
        stCodec.codec_id = AV_CODEC_ID_HEVC;
        stCodec.extradata_size = static_cast<int>(arExtra.size());
        stCodec.extradata = static_cast<std::uint8_t*>(av_mallocz(arExtra.size() + AV_INPUT_BUFFER_PADDING_SIZE));
        std::copy(arExtra.begin(), arExtra.end(), stCodec.extradata);
    }
    ~stDef_Described() { avformat_free_context(pFormat); }
};

TEST(PacketSink, TellsWhatKeepsPicturesOut)
{
    using Bytes = std::vector<std::uint8_t>;
    const Bytes arFrame = KeyFrame(640, 368, "h265"), arStart = {0, 0, 1, 0x28};
    const auto itKey = std::search(arFrame.begin(), arFrame.end(), arStart.begin(), arStart.end());
    const Bytes arSets(arFrame.begin(), itKey), arKey(itKey, arFrame.end());
    const Bytes arOther = {0, 0, 1, 0x02, 1, 0xd0}, arLong(st_RingParam::MaxExtra * 2, 0x55);
    const Bytes arMessage = Bytes{0, 0, 1, 0x4e, 1} + arLong, arLongSet = Bytes{0, 0, 1, 0x42, 1} + arLong;
    const struct
    {
        const char* pWhat;
        Bytes arDescribed;
        Bytes arFirst;
        emDef_RingLack nLack;
    } arRows[] = {
        {"a long message beside described sets", arSets + arMessage, arKey, emDef_RingLack::Nothing},
        {"a long message beside sent sets", {}, arMessage + arSets + arKey, emDef_RingLack::Nothing},
        {"no key frame", arSets, arOther, emDef_RingLack::KeyFrame},
        {"no sets", arMessage, arKey, emDef_RingLack::ParameterSets},
        {"long described sets", arSets + arLongSet, arKey, emDef_RingLack::LongSets},
        {"long sent sets", {}, arSets + arLongSet + arKey, emDef_RingLack::LongSets},
        {"a huge picture", arSets, arKey + Bytes(5u << 20, 0x55), emDef_RingLack::Room},
    };
    CShmRing objRing;
    ASSERT_TRUE(objRing.m_F_b_Attach(emDef_RingKind::Video, 33, 0, 0, true));
    CShmRingReader objReader;
    ASSERT_TRUE(objReader.m_F_b_Open(emDef_RingKind::Video, 33, 0, 0));
    for (const auto& row : arRows) {
        SCOPED_TRACE(row.pWhat);
        const stDef_Described objDescribed(row.arDescribed);
        CPacketSink objSink;
        objSink.m_S_Open(&objRing, *objDescribed.pStream);
        AVPacket* pPacket = av_packet_alloc();
        for (Bytes arPiece : {row.arFirst, arOther, arOther}) { // a picture is whole when the next one begins
            pPacket->data = arPiece.data();
            pPacket->size = static_cast<int>(arPiece.size());
            objSink.m_S_Write(*pPacket, 1);
        }
        av_packet_free(&pPacket);
        EXPECT_EQ(objReader.m_F_n_Lack(), row.nLack);
        st_RingFrame stFrame;
        const bool bWritten = objReader.m_F_n_Read(stFrame) == emDef_RingRead::Frame;
        EXPECT_EQ(bWritten, row.nLack == emDef_RingLack::Nothing);
        while (bWritten && objReader.m_F_n_Read(stFrame) == emDef_RingRead::Frame)
            ;
        st_RingParam stParam;
        std::uint32_t nSerial = 0;
        ASSERT_TRUE(!bWritten || objReader.m_F_b_GetParam(stParam, nSerial));
        EXPECT_EQ(Bytes(stParam.arExtra.begin(), stParam.arExtra.begin() + stParam.nExtraSize),
                  bWritten ? arSets : Bytes());
    }
}

TEST(AccessUnit, GathersWhatBelongsToAPicture)
{
    const std::map<std::string, emDef_RingCodec> mapCodecs = {
        {"H264", emDef_RingCodec::H264}, {"H265", emDef_RingCodec::H265}, {"MPEG4", emDef_RingCodec::MPEG4}};
    for (const stDef_TableRow& row : ReadTable("units.txt", 3)) {
        SCOPED_TRACE(row.sWhere);
        const QByteArrayList arPieces = QByteArray::fromStdString(row[0]).split(' ');
        CAccessUnit objUnit;
        objUnit.m_S_Open(mapCodecs.at(row[1]));
        QByteArrayList arPictures;
        for (qsizetype i = 0; i < arPieces.size(); ++i) {
            // Each piece is stamped with its number, so that the picture's stamps tell its first and last one.
            const QByteArray sPiece = QByteArray::fromHex(arPieces[i]);
            if (!objUnit.m_F_b_Add(reinterpret_cast<const std::uint8_t*>(sPiece.data()), std::size_t(sPiece.size()), i,
                                   i))
                continue;
            QByteArray sExpected;
            for (std::int64_t n = objUnit.m_F_n_PtsUs(); n <= objUnit.m_F_n_ArrivalUs(); ++n) {
                sExpected += QByteArray::fromHex(arPieces[n]);
                arPictures << QByteArray::number(qint64(n));
            }
            arPictures.last() += objUnit.m_F_b_Key() ? "*" : "";
            EXPECT_EQ(objUnit.m_F_ar_Bytes(), std::vector<std::uint8_t>(sExpected.begin(), sExpected.end()));
        }
        EXPECT_EQ(arPictures.join(' ').toStdString(), row[2]);
    }
}

TEST(AccessUnit, GivesUpAPictureThatNeverEnds)
{
    CAccessUnit objUnit;
    objUnit.m_S_Open(emDef_RingCodec::H264);
    const std::vector<std::uint8_t> arSlice = {0, 0, 1, 0x65, 0x88};
    const std::vector<std::uint8_t> arRest(1 << 20, 0x55);
    EXPECT_FALSE(objUnit.m_F_b_Add(arSlice.data(), arSlice.size(), 0, 0));
    for (int i = 0; i < 20; ++i)
        EXPECT_FALSE(objUnit.m_F_b_Add(arRest.data(), arRest.size(), 0, 0));
    EXPECT_FALSE(objUnit.m_F_b_Add(arSlice.data(), arSlice.size(), 1, 1)) << "the endless one is gone";
    EXPECT_TRUE(objUnit.m_F_b_Add(arSlice.data(), arSlice.size(), 2, 2));
    EXPECT_EQ(objUnit.m_F_ar_Bytes(), arSlice);
}

} // namespace
