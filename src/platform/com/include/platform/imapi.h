// The legacy disc-mastering service (IMAPI) and the shell's burner. MinGW has no imapi.h; only
// ICDBurn comes from its shell headers. The order of the methods is that of the real vtables.
//
// BYTE stands for the 8-bit boolean of the interface definitions: true is 1.
#pragma once

#include "platform/com.h"

struct IDiscMasterProgressEvents;

inline constexpr CLSID CLSID_MSDiscMasterObj = {
    0x520CCA63, 0x51A5, 0x11D3, {0x91, 0x44, 0x00, 0x10, 0x4B, 0xA1, 0x1C, 0x5E}};

// Results that are no failures: a property was not understood; a buffer was too small.
inline constexpr HRESULT IMAPI_S_PROPERTIESIGNORED = 0x00040200;
inline constexpr HRESULT IMAPI_S_BUFFER_TO_SMALL = 0x00040201;

inline constexpr HRESULT IMAPI_E_NOTOPENED = static_cast<HRESULT>(0x8004020B);
inline constexpr HRESULT IMAPI_E_NOTINITIALIZED = static_cast<HRESULT>(0x8004020C);
inline constexpr HRESULT IMAPI_E_USERABORT = static_cast<HRESULT>(0x8004020D);
inline constexpr HRESULT IMAPI_E_GENERIC = static_cast<HRESULT>(0x8004020E);
inline constexpr HRESULT IMAPI_E_MEDIUM_NOTPRESENT = static_cast<HRESULT>(0x8004020F);
inline constexpr HRESULT IMAPI_E_MEDIUM_INVALIDTYPE = static_cast<HRESULT>(0x80040210);
inline constexpr HRESULT IMAPI_E_DEVICE_NOPROPERTIES = static_cast<HRESULT>(0x80040211);
inline constexpr HRESULT IMAPI_E_DEVICE_NOTACCESSIBLE = static_cast<HRESULT>(0x80040212);
inline constexpr HRESULT IMAPI_E_DEVICE_NOTPRESENT = static_cast<HRESULT>(0x80040213);
inline constexpr HRESULT IMAPI_E_DEVICE_INVALIDTYPE = static_cast<HRESULT>(0x80040214);
inline constexpr HRESULT IMAPI_E_INITIALIZE_WRITE = static_cast<HRESULT>(0x80040215);
inline constexpr HRESULT IMAPI_E_INITIALIZE_ENDWRITE = static_cast<HRESULT>(0x80040216);
inline constexpr HRESULT IMAPI_E_FILESYSTEM = static_cast<HRESULT>(0x80040217);
inline constexpr HRESULT IMAPI_E_FILEACCESS = static_cast<HRESULT>(0x80040218);
inline constexpr HRESULT IMAPI_E_DISCINFO = static_cast<HRESULT>(0x80040219);
inline constexpr HRESULT IMAPI_E_TRACKNOTOPEN = static_cast<HRESULT>(0x8004021A);
inline constexpr HRESULT IMAPI_E_TRACKOPEN = static_cast<HRESULT>(0x8004021B);
inline constexpr HRESULT IMAPI_E_DISCFULL = static_cast<HRESULT>(0x8004021C);
inline constexpr HRESULT IMAPI_E_BADJOLIETNAME = static_cast<HRESULT>(0x8004021D);
inline constexpr HRESULT IMAPI_E_INVALIDIMAGE = static_cast<HRESULT>(0x8004021E);
inline constexpr HRESULT IMAPI_E_NOACTIVEFORMAT = static_cast<HRESULT>(0x8004021F);
inline constexpr HRESULT IMAPI_E_NOACTIVERECORDER = static_cast<HRESULT>(0x80040220);
inline constexpr HRESULT IMAPI_E_WRONGFORMAT = static_cast<HRESULT>(0x80040221);
inline constexpr HRESULT IMAPI_E_ALREADYOPEN = static_cast<HRESULT>(0x80040222);
inline constexpr HRESULT IMAPI_E_WRONGDISC = static_cast<HRESULT>(0x80040223);
inline constexpr HRESULT IMAPI_E_FILEEXISTS = static_cast<HRESULT>(0x80040224);
inline constexpr HRESULT IMAPI_E_STASHINUSE = static_cast<HRESULT>(0x80040225);
inline constexpr HRESULT IMAPI_E_DEVICE_STILL_IN_USE = static_cast<HRESULT>(0x80040226);
inline constexpr HRESULT IMAPI_E_LOSS_OF_STREAMING = static_cast<HRESULT>(0x80040227);
inline constexpr HRESULT IMAPI_E_COMPRESSEDSTASH = static_cast<HRESULT>(0x80040228);
inline constexpr HRESULT IMAPI_E_ENCRYPTEDSTASH = static_cast<HRESULT>(0x80040229);
inline constexpr HRESULT IMAPI_E_NOTENOUGHDISKFORSTASH = static_cast<HRESULT>(0x8004022A);
inline constexpr HRESULT IMAPI_E_REMOVABLESTASH = static_cast<HRESULT>(0x8004022B);
inline constexpr HRESULT IMAPI_E_CANNOT_WRITE_TO_MEDIA = static_cast<HRESULT>(0x8004022C);
inline constexpr HRESULT IMAPI_E_TRACK_NOT_BIG_ENOUGH = static_cast<HRESULT>(0x8004022D);
inline constexpr HRESULT IMAPI_E_BOOTIMAGE_AND_NONBLANK_DISC = static_cast<HRESULT>(0x8004022E);

// Media types and flags of QueryMediaType; an empty tray has type 0 and flags 0.
inline constexpr LONG MEDIA_CDDA_CDROM = 1;
inline constexpr LONG MEDIA_CD_ROM_XA = 2;
inline constexpr LONG MEDIA_CD_I = 3;
inline constexpr LONG MEDIA_CD_EXTRA = 4;
inline constexpr LONG MEDIA_CD_OTHER = 5;
inline constexpr LONG MEDIA_SPECIAL = 6;
inline constexpr LONG MEDIA_BLANK = 1;
inline constexpr LONG MEDIA_RW = 2;
inline constexpr LONG MEDIA_WRITABLE = 4;
inline constexpr LONG MEDIA_FORMAT_UNUSABLE_BY_IMAPI = 8;

inline constexpr LONG RECORDER_CDR = 1;
inline constexpr LONG RECORDER_CDRW = 2;

inline constexpr ULONG RECORDER_DOING_NOTHING = 0;
inline constexpr ULONG RECORDER_OPENED = 1;
inline constexpr ULONG RECORDER_BURNING = 2;

inline constexpr IID IID_IDiscRecorder = {
    0x85AC9776, 0xCA88, 0x4CF2, {0x89, 0x4E, 0x09, 0x59, 0x8C, 0x07, 0x8A, 0x41}};
struct IDiscRecorder : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Init(BYTE* uniqueId, ULONG idSize, ULONG driveNumber) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetRecorderGUID(BYTE* uniqueId, ULONG bufferSize,
                                                    ULONG* returnSizeRequired) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetRecorderType(LONG* typeCode) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetDisplayNames(BSTR* vendorId, BSTR* productId,
                                                    BSTR* revision) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetBasePnPID(BSTR* basePnpId) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetPath(BSTR* path) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetRecorderProperties(IPropertyStorage** propStg) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetRecorderProperties(IPropertyStorage* propStg) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetRecorderState(ULONG* devStateFlags) = 0;
  virtual HRESULT STDMETHODCALLTYPE OpenExclusive() = 0;
  virtual HRESULT STDMETHODCALLTYPE QueryMediaType(LONG* mediaType, LONG* mediaFlags) = 0;
  virtual HRESULT STDMETHODCALLTYPE QueryMediaInfo(BYTE* sessions, BYTE* lastTrack,
                                                   ULONG* startAddress, ULONG* nextWritable,
                                                   ULONG* freeBlocks) = 0;
  virtual HRESULT STDMETHODCALLTYPE Eject() = 0;
  virtual HRESULT STDMETHODCALLTYPE Erase(BYTE fullErase) = 0;
  virtual HRESULT STDMETHODCALLTYPE Close() = 0;
};

inline constexpr IID IID_IEnumDiscRecorders = {
    0x9B1921E1, 0x54AC, 0x11D3, {0x91, 0x44, 0x00, 0x10, 0x4B, 0xA1, 0x1C, 0x5E}};
struct IEnumDiscRecorders : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Next(ULONG count, IDiscRecorder** recorder, ULONG* fetched) = 0;
  virtual HRESULT STDMETHODCALLTYPE Skip(ULONG count) = 0;
  virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
  virtual HRESULT STDMETHODCALLTYPE Clone(IEnumDiscRecorders** enumerator) = 0;
};

inline constexpr IID IID_IEnumDiscMasterFormats = {
    0xDDF445E1, 0x54BA, 0x11D3, {0x91, 0x44, 0x00, 0x10, 0x4B, 0xA1, 0x1C, 0x5E}};
struct IEnumDiscMasterFormats : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Next(ULONG count, LPIID formatIds, ULONG* fetched) = 0;
  virtual HRESULT STDMETHODCALLTYPE Skip(ULONG count) = 0;
  virtual HRESULT STDMETHODCALLTYPE Reset() = 0;
  virtual HRESULT STDMETHODCALLTYPE Clone(IEnumDiscMasterFormats** enumerator) = 0;
};

inline constexpr IID IID_IDiscMaster = {
    0x520CCA62, 0x51A5, 0x11D3, {0x91, 0x44, 0x00, 0x10, 0x4B, 0xA1, 0x1C, 0x5E}};
struct IDiscMaster : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE Open() = 0;
  virtual HRESULT STDMETHODCALLTYPE EnumDiscMasterFormats(IEnumDiscMasterFormats** enumerator) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetActiveDiscMasterFormat(LPIID formatId) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetActiveDiscMasterFormat(REFIID riid, void** format) = 0;
  virtual HRESULT STDMETHODCALLTYPE EnumDiscRecorders(IEnumDiscRecorders** enumerator) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetActiveDiscRecorder(IDiscRecorder** recorder) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetActiveDiscRecorder(IDiscRecorder* recorder) = 0;
  virtual HRESULT STDMETHODCALLTYPE ClearFormatContent() = 0;
  virtual HRESULT STDMETHODCALLTYPE ProgressAdvise(IDiscMasterProgressEvents* events,
                                                   UINT_PTR* cookie) = 0;
  virtual HRESULT STDMETHODCALLTYPE ProgressUnadvise(UINT_PTR cookie) = 0;
  virtual HRESULT STDMETHODCALLTYPE RecordDisc(BYTE simulate, BYTE ejectAfterBurn) = 0;
  virtual HRESULT STDMETHODCALLTYPE Close() = 0;
};

inline constexpr IID IID_IJolietDiscMaster = {
    0xE3BC42CE, 0x4E5C, 0x11D3, {0x91, 0x44, 0x00, 0x10, 0x4B, 0xA1, 0x1C, 0x5E}};
struct IJolietDiscMaster : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE GetTotalDataBlocks(LONG* blocks) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetUsedDataBlocks(LONG* blocks) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetDataBlockSize(LONG* blockBytes) = 0;
  virtual HRESULT STDMETHODCALLTYPE AddData(IStorage* storage, LONG fileOverwrite) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetJolietProperties(IPropertyStorage** propStg) = 0;
  virtual HRESULT STDMETHODCALLTYPE SetJolietProperties(IPropertyStorage* propStg) = 0;
};

#ifndef _WIN32
inline constexpr CLSID CLSID_CDBurn = {
    0xFBEB8A05, 0xBEEE, 0x4442, {0x80, 0x4E, 0x40, 0x9D, 0x6C, 0x45, 0x15, 0xE9}};

inline constexpr IID IID_ICDBurn = {
    0x3D73A659, 0xE5D0, 0x4D42, {0xAF, 0xC0, 0x51, 0x21, 0xBA, 0x42, 0x5C, 0x8D}};
struct ICDBurn : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE GetRecorderDriveLetter(LPWSTR drive, UINT cch) = 0;
  virtual HRESULT STDMETHODCALLTYPE Burn(HWND owner) = 0;
  virtual HRESULT STDMETHODCALLTYPE HasRecordableDrive(BOOL* has) = 0;
};
#endif
