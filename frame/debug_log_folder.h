// The folder of the library's log files.
#ifndef VEXA_FRAME_DEBUG_LOG_FOLDER_H_
#define VEXA_FRAME_DEBUG_LOG_FOLDER_H_

namespace vexa {

inline constexpr wchar_t kLibraryFolder[] =
    L"C:\\ProgramData\\Vexa\\Vexa System Control Interface\\VexaSystemAnalysis\\";
inline constexpr wchar_t kDebugLogFolder[] =
    L"C:\\ProgramData\\Vexa\\Vexa System Control Interface\\VexaSystemAnalysis\\DebugLog\\";

// Creates the folder and those above it, each only if it does not exist yet. Returns whether it is there afterwards.
bool CreateDebugLogFolder() noexcept;

}  // namespace vexa

#endif  // VEXA_FRAME_DEBUG_LOG_FOLDER_H_
