// Windows only; read after its headers, as often as they are. They define function-like names as
// macros (GetFileAttributes becomes GetFileAttributesW), which would rename methods of the same
// name in one file and not in another. The product calls the W and A forms by their full names.
#undef CopyFile
#undef CreateDirectory
#undef CreateEvent
#undef CreateFile
#undef CreateProcess
#undef DeleteFile
#undef DrawText
#undef FindFirstFile
#undef FindNextFile
#undef FormatMessage
#undef GetClassInfo
#undef GetClassName
#undef GetClassObject
#undef GetComputerName
#undef GetCurrentDirectory
#undef GetDateFormat
#undef GetFileAttributes
#undef GetFileAttributesEx
#undef GetFreeSpace
#undef GetFullPathName
#undef GetMessage
#undef GetModuleFileName
#undef GetModuleHandle
#undef GetObject
#undef GetProp
#undef GetTempDirectory
#undef GetTempFileName
#undef GetTempPath
#undef GetTimeFormat
#undef GetUserName
#undef GetVersionEx
#undef LoadLibrary
#undef LoadString
#undef MoveFile
#undef MoveFileEx
#undef RemoveDirectory
#undef RemoveProp
#undef ReportEvent
#undef SendMessage
#undef SetClassName
#undef SetCurrentDirectory
#undef SetFileAttributes
#undef SetProp
#undef SetVolumeLabel
#undef UpdateResource
#undef VerifyVersionInfo
#undef Yield

// Short words that are values or types of the product.
#undef DELETE
#undef ERROR
#undef IGNORE
#undef max
#undef min
#undef small
