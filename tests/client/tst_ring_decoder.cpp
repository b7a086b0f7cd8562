#include <QBuffer>
#include <QImage>
#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <thread>

#include "live/CRingDecoder.h"

namespace {

constexpr int NvrID = 901;

std::int64_t NowUs()
{
    using namespace std::chrono;
    return duration_cast<microseconds>(steady_clock::now().time_since_epoch()).count();
}

// One JPEG of a single colour: every packet is a key frame, and its picture can be told by its first pixel.
std::vector<std::uint8_t> Jpeg(int nWidth, int nHeight, QRgb nColour)
{
    QImage image(nWidth, nHeight, QImage::Format_RGB32);
    image.fill(nColour);
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, "JPG", 95));
    return {buffer.data().begin(), buffer.data().end()};
}

class RingDecoderTest : public testing::Test
{
protected:
    void OpenRing(int nWidth, int nHeight)
    {
        ASSERT_TRUE(vm_ring.m_F_b_Attach(emDef_RingKind::Video, NvrID, 0, 0, true));
        ASSERT_TRUE(vm_ring.m_F_b_ClaimWriter(this));
        SetParam(nWidth, nHeight);
    }

    void SetParam(int nWidth, int nHeight, emDef_RingCodec nCodec = emDef_RingCodec::MJPEG)
    {
        st_RingParam stParam;
        stParam.nCodec = nCodec;
        stParam.nWidth = nWidth;
        stParam.nHeight = nHeight;
        ASSERT_TRUE(vm_ring.m_F_b_SetParam(stParam));
    }

    void Write(const std::vector<std::uint8_t>& arBytes)
    {
        st_RingPacket stPacket;
        stPacket.bKey = true;
        stPacket.nArrivalUs = NowUs();
        ASSERT_TRUE(vm_ring.m_F_b_Write(stPacket, arBytes.data(), static_cast<std::uint32_t>(arBytes.size())));
    }

    // Writes the packet again and again, as a stream does, until a picture of that colour comes out.
    bool Shows(const std::vector<std::uint8_t>& arBytes, QRgb nColour)
    {
        const auto tmEnd = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (std::chrono::steady_clock::now() < tmEnd) {
            Write(arBytes);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            if (vm_decoder.m_F_b_TakePicture(vm_picture) && Near(vm_picture.arPixels[0], nColour))
                return true;
        }
        return false;
    }

    static bool Near(QRgb nGot, QRgb nWant)
    {
        return std::abs(qRed(nGot) - qRed(nWant)) < 12 && std::abs(qGreen(nGot) - qGreen(nWant)) < 12 &&
               std::abs(qBlue(nGot) - qBlue(nWant)) < 12;
    }

    CShmRing vm_ring;
    stDef_Picture vm_picture;
    std::atomic<int> vm_nCalls{0};
    CRingDecoder vm_decoder{[this] { ++vm_nCalls; }};
};

TEST_F(RingDecoderTest, PicturesComeInTheirOwnShapeAndColours)
{
    vm_decoder.m_S_SetCellSize(300, 300);
    vm_decoder.m_S_Start(NvrID, 0, 0, {}); // before there is a ring
    OpenRing(640, 360);
    ASSERT_TRUE(Shows(Jpeg(640, 360, qRgb(200, 40, 30)), qRgb(200, 40, 30)));
    EXPECT_EQ(vm_picture.nWidth, 300);
    EXPECT_EQ(vm_picture.nHeight, 169);
    EXPECT_TRUE(Near(vm_picture.arPixels[168UL * vm_picture.nStride + 299], qRgb(200, 40, 30)));
    EXPECT_GT(vm_nCalls, 0);

    // Another size in mid-stream, and a cell that was resized.
    vm_decoder.m_S_SetCellSize(200, 100);
    SetParam(320, 320);
    ASSERT_TRUE(Shows(Jpeg(320, 320, qRgb(20, 180, 60)), qRgb(20, 180, 60)));
    EXPECT_EQ(vm_picture.nWidth, 100);
    EXPECT_EQ(vm_picture.nHeight, 100);
}

TEST_F(RingDecoderTest, OnlyTheNewestPictureWaits)
{
    OpenRing(64, 64);
    vm_decoder.m_S_SetCellSize(64, 64);
    vm_decoder.m_S_Start(NvrID, 0, 0, {});
    ASSERT_TRUE(Shows(Jpeg(64, 64, qRgb(10, 10, 10)), qRgb(10, 10, 10)));
    for (int i = 0; i < 50; ++i)
        Write(Jpeg(64, 64, qRgb(10, 10, 10)));
    Write(Jpeg(64, 64, qRgb(250, 250, 250)));
    // Without anybody taking pictures meanwhile, the last of them is what is handed out, and nothing after it.
    std::uint64_t nPacket = 0;
    const auto tmEnd = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (!Near(vm_picture.arPixels[0], qRgb(250, 250, 250)) && std::chrono::steady_clock::now() < tmEnd) {
        if (vm_decoder.m_F_b_TakePicture(vm_picture)) {
            EXPECT_GT(vm_picture.nPacketSerial, nPacket);
            nPacket = vm_picture.nPacketSerial;
        }
    }
    EXPECT_TRUE(Near(vm_picture.arPixels[0], qRgb(250, 250, 250)));
    EXPECT_FALSE(vm_decoder.m_F_b_TakePicture(vm_picture));
}

TEST_F(RingDecoderTest, WhatCantBeDecodedIsSkipped)
{
    OpenRing(64, 64);
    vm_decoder.m_S_SetCellSize(64, 64);
    vm_decoder.m_S_Start(NvrID, 0, 0, {});
    const auto arGood = Jpeg(64, 64, qRgb(90, 90, 200));
    const std::vector<std::uint8_t> arCut(arGood.begin(), arGood.begin() + 20);
    std::vector<std::uint8_t> arNoise(3000);
    for (std::size_t i = 0; i < arNoise.size(); ++i)
        arNoise[i] = static_cast<std::uint8_t>(i * 7919 >> 3);
    for (const auto nCodec : {emDef_RingCodec::H264, emDef_RingCodec::H265, emDef_RingCodec::MPEG4,
                              emDef_RingCodec::None, emDef_RingCodec::MJPEG}) {
        SetParam(64, 64, nCodec);
        Write(arNoise);
        Write(arCut);
    }
    EXPECT_TRUE(Shows(arGood, qRgb(90, 90, 200)));
}

TEST_F(RingDecoderTest, PicturesOfTheConnectionBeforeAreNotShown)
{
    OpenRing(64, 64);
    Write(Jpeg(64, 64, qRgb(10, 10, 10)));
    vm_decoder.m_S_SetCellSize(64, 64);
    vm_decoder.m_S_Start(NvrID, 0, 0, {});
    const auto tmEnd = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    while (vm_nCalls == 0 && std::chrono::steady_clock::now() < tmEnd)
        std::this_thread::yield();
    vm_decoder.m_S_SkipOld();
    EXPECT_FALSE(vm_decoder.m_F_b_TakePicture(vm_picture)) << "decoded before the call";
    vm_decoder.m_S_Stop();
    vm_decoder.m_S_Start(NvrID, 0, 0, {});
    ASSERT_TRUE(Shows(Jpeg(64, 64, qRgb(250, 250, 250)), qRgb(250, 250, 250)));
    EXPECT_EQ(vm_picture.nSerial, 1U) << "the dark picture was the first";
}

TEST_F(RingDecoderTest, ARingThatGoesIsFoundAgain)
{
    OpenRing(64, 64);
    vm_decoder.m_S_SetCellSize(64, 64);
    vm_decoder.m_S_Start(NvrID, 0, 0, {});
    ASSERT_TRUE(Shows(Jpeg(64, 64, qRgb(10, 10, 10)), qRgb(10, 10, 10)));
    vm_ring.m_S_ReleaseWriter(this);
    vm_ring.m_S_Detach();
    OpenRing(128, 32);
    EXPECT_TRUE(Shows(Jpeg(128, 32, qRgb(250, 250, 250)), qRgb(250, 250, 250)));
    EXPECT_EQ(vm_picture.nHeight, 16);
}

TEST_F(RingDecoderTest, TheThreadEndsPromptlyWithAndWithoutARing)
{
    for (const bool bRing : {false, true}) {
        if (bRing)
            OpenRing(64, 64);
        vm_decoder.m_S_Start(NvrID, 0, 0, {});
        const std::int64_t nBefore = NowUs();
        vm_decoder.m_S_Stop();
        EXPECT_LT(NowUs() - nBefore, 500'000) << "ring: " << bRing;
    }
}

} // namespace
