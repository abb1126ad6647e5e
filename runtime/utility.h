// Utilities for the start of a host: command line, work directory, temporary file, two hashes.
#pragma once

#include "framework/export.h"
#include "framework/string.h"

#include <cstdio>

// Static operations on static state without a lock: for one thread, during the host's start. Paths use '/'; on Windows
// they may also contain '\'.
class COMMONGROUND_API CZETUtility
{
public:
    // Splits a command line by the rules of the Windows runtime. The first argument, the program, ends at the first
    // blank or tab outside of quotes, which are dropped; in later ones backslashes are special only before a quote: two
    // mean one, one makes the quote a literal, and inside of quotes a doubled quote gives one and closes them. argv
    // receives pointers into args and a final null, args the arguments with their terminators; numargs and numchars
    // receive the numbers of both. With argv and args null it only counts. A null line counts as an empty one: a
    // program without a name.
    static void parse_cmdline(const wchar_t* cmdline, wchar_t** argv, wchar_t* args, int* numargs, int* numchars);
    // The first unit that is not white space; null for null.
    static const wchar_t* SkipSpace(const wchar_t* text);
    // The text after the '=' of the first argument "-name=value", including blanks. A quoted argument may have blanks
    // before the dash and before the '='. Without such an argument, the default.
    static zet::String_T<wchar_t> ParseParameterStr(const wchar_t* cmdline, const wchar_t* name,
                                                    const wchar_t* defaultValue);
    // The number at the start of that text: 0 if there is none, clamped to the range of int. The default if the text is
    // empty.
    static int ParseParameterInt(const wchar_t* cmdline, const wchar_t* name, int defaultValue);

    // The work directory. If none is set, that of the executable becomes the work directory and the current directory;
    // a failure to change the current directory is logged, and the path is kept.
    static const wchar_t* GetWorkPath();
    // Makes a directory (its first 275 units) the current directory and the work directory. On failure, which is
    // logged, the work directory does not change.
    static void SetWorkPath(const wchar_t* path);

    // The temporary directory; chosen now if no temporary file is open.
    static const wchar_t* GetTempPathW();
    // Chooses the first directory in which a temporary file can be opened, and creates missing directories: the given
    // path (its first 275 units), if not null; "tmp" in the work directory; else the system's temporary directory,
    // without a file. The file stays open and is deleted when the process ends or another directory is chosen, whatever
    // the current directory is then. A forked process leaves it to its parent.
    static const wchar_t* SetTempPath(const wchar_t* path);
    // Closes and deletes the temporary file, if any; a file opened by a parent process is only closed.
    static void DeleteTempFile();

    // The MD5 of a text as 32 lower-case hexadecimal digits; empty if the platform refuses MD5.
    static zet::String_T<char> GetMD5(const zet::String_T<char>& text);
    // The HMAC over SHA-1 of a text in Base64, up to the first zero byte of the digest: peers compare it in this form.
    static zet::String_T<char> GetHMACSHA1(const zet::String_T<char>& key, const zet::String_T<char>& text);

    // Units of a path passed by a host, and of one returned by the system.
    static constexpr int kMaxGivenPath = 275;
    static constexpr int kMaxSystemPath = 260;
    // Units of a temporary path: twice the longest path of the system, for a directory and what is appended to it.
    static constexpr int kTempPathRoom = 2 * kMaxSystemPath;

    // Static and not const: a process has one work directory and one temporary directory, and hosts read both members
    // by name. Only the operations above write to them. Empty until a work directory is queried or set.
    static wchar_t work_path[kMaxGivenPath + 1];
    static wchar_t tempPath[kTempPathRoom];
    static wchar_t tempFileName[kTempPathRoom];
    // The temporary file, open for writing; null while there is none.
    static std::FILE* tempFile;
    // Whether the clean-up at the end of the process is registered for the open file.
    static bool initTempFile;
};
