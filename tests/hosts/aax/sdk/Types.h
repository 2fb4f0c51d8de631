// Test doubles: the types and numbers of the AAX interface that our adapter uses.
#pragma once

#include <cstdint>
#include <string>

#define AAX_CALLBACK

using AAX_Result = std::int32_t;
using AAX_CTypeID = std::uint32_t;
using AAX_CFieldIndex = std::int32_t;
using AAX_CPropertyValue = std::int32_t;
using AAX_CSampleRate = float;
using AAX_CParamID = const char*;

enum AAX_EError : int {
    AAX_SUCCESS = 0,
    AAX_ERROR_INVALID_PARAMETER_ID = -20001,
    AAX_ERROR_NULL_OBJECT = -20004,
    AAX_ERROR_INVALID_CHUNK_INDEX = -20006,
    AAX_ERROR_INVALID_CHUNK_ID = -20007,
    AAX_ERROR_INCORRECT_CHUNK_SIZE = -20008,
    AAX_ERROR_UNKNOWN_EXCEPTION = -20042,
    AAX_ERROR_INVALID_ARGUMENT = -20043,
};
enum AAX_EStemFormat { AAX_eStemFormat_Mono = 1, AAX_eStemFormat_Stereo = 0x10002 };
enum AAX_EPlugInCategory : std::uint32_t {
    AAX_ePlugInCategory_None = 0,
    AAX_ePlugInCategory_SWGenerators = 0x800,
};
enum AAX_EMIDINodeType { AAX_eMIDINodeType_LocalInput = 0, AAX_eMIDINodeType_Transport = 3 };
enum AAX_EDataInPortType { AAX_eDataInPortType_Buffered = 1 };
enum AAX_EUpdateSource : std::int32_t {
    AAX_eUpdateSource_Unspecified = 0,
    AAX_eUpdateSource_Parameter = 1,
    AAX_eUpdateSource_Chunk = 2,
};
enum AAX_CProcPtrID {
    kAAX_ProcPtrID_Create_EffectParameters = 0,
    kAAX_ProcPtrID_Create_EffectGUI = 1,
};
enum AAX_EProperty : std::int32_t {
    AAX_eProperty_ManufacturerID = 11,
    AAX_eProperty_ProductID = 12,
    AAX_eProperty_PlugInID_Native = 13,
    AAX_eProperty_InputStemFormat = 51,
    AAX_eProperty_OutputStemFormat = 52,
    AAX_eProperty_CanBypass = 60,
    AAX_eProperty_SupportsSideChainInput = 116,
};

struct AAX_SPlugInChunk {
    std::int32_t fSize;
    std::int32_t fVersion;
    AAX_CTypeID fManufacturerID;
    AAX_CTypeID fProductID;
    AAX_CTypeID fPlugInID;
    AAX_CTypeID fChunkID;
    unsigned char fName[32];
    char fData[1];
};
struct AAX_CMidiPacket {
    std::uint32_t mTimestamp;
    std::uint32_t mLength;
    unsigned char mData[4];
    std::uint8_t mIsImmediate;
};
struct AAX_CMidiStream {
    std::uint32_t mBufferSize;
    AAX_CMidiPacket* mBuffer;
};
struct AAX_Point {
    float vert = 0, horz = 0;
};
struct AAX_Rect {
    float top = 0, left = 0, width = 0, height = 0;
};

class AAX_IString {
  public:
    virtual ~AAX_IString() = default;
    virtual const char* Get() const = 0;
    virtual void Set(const char* text) = 0;
};
class AAX_CString final : public AAX_IString {
  public:
    AAX_CString() = default;
    explicit AAX_CString(const char* text)
        : text_(text) {}
    const char* Get() const override { return text_.c_str(); }
    void Set(const char* text) override { text_ = text; }

  private:
    std::string text_;
};
