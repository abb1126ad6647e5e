// What a host needs while it starts: its command line, its work directory, a place for temporary files, two hashes.
#pragma once

#include "framework/platform/export.h"
#include "framework/string.h"

#include <cstdio>

// Static operations on static state without a lock: for one thread, while the host starts. Paths take and give '/'; on
// Windows they take '\' as well.
class COMMONGROUND_API CZETUtility
{
public:
    // Splits a command line by the rules of the Windows runtime. The first argument, the program, ends at the first
    // blank or tab outside of quotes, which are dropped; in the later ones backslashes count before a quote only: two
    // stand for one, one makes the quote a literal, and inside of quotes a doubled quote gives one and closes them.
    // argv takes pointers into args and a closing null, args the arguments with their terminators; numargs and numchars
    // tell how much that is. With argv and args null it only counts. A null line is an empty one: a program without a
    // name.
    static void parse_cmdline(const wchar_t* cmdline, wchar_t** argv, wchar_t* args, int* numargs, int* numchars);
    // The first unit that is no white space; null stays null.
    static const wchar_t* SkipSpace(const wchar_t* text);
    // The text behind the '=' of the first argument "-name=value", blanks included. An argument in quotes may have
    // blanks in front of the dash and of the '='. Without such an argument, the default.
    static zet::String_T<wchar_t> ParseParameterStr(const wchar_t* cmdline, const wchar_t* name,
                                                    const wchar_t* defaultValue);
    // The number at the beginning of that text, 0 where there is none, the nearest where an int cannot hold it. The
    // default where the text is empty.
    static int ParseParameterInt(const wchar_t* cmdline, const wchar_t* name, int defaultValue);

    // The work directory. While none is set, that of the executable, which becomes the current directory; if it cannot,
    // that is reported, and the path stays nevertheless.
    static const wchar_t* GetWorkPath();
    // Makes a directory, its first 275 units, the current one and the work directory. If it cannot, that is reported,
    // and the work directory stays.
    static void SetWorkPath(const wchar_t* path);

    // The temporary directory, chosen first where no temporary file is open.
    static const wchar_t* GetTempPathW();
    // Chooses the first place in which a temporary file opens, making its directories: the given path, its first 275
    // units, if it is not null; "tmp" in the work directory; else the system's temporary directory, without a file. The
    // file stays open, and goes when the process ends or another place is chosen, whatever the current directory is
    // then. A forked process leaves it to its parent.
    static const wchar_t* SetTempPath(const wchar_t* path);
    // Closes and deletes the temporary file, if there is one; one that a parent process opened is only closed.
    static void DeleteTempFile();

    // The MD5 of a text as 32 lower-case hexadecimal digits; empty where the platform refuses MD5.
    static zet::String_T<char> GetMD5(const zet::String_T<char>& text);
    // The HMAC over SHA-1 of a text in Base64, up to the first zero byte of the digest: peers compare it in this form.
    static zet::String_T<char> GetHMACSHA1(const zet::String_T<char>& key, const zet::String_T<char>& text);

    // Units of a path that hosts hand in, and of one that the system is asked for.
    static constexpr int kMaxGivenPath = 275;
    static constexpr int kMaxSystemPath = 260;
    // Room of a temporary path: for a directory as long as the system's longest, and as much again for what is put
    // behind it.
    static constexpr int kTempPathRoom = 2 * kMaxSystemPath;

    // Static and not const: a process has one work directory and one place for temporary files, and hosts read both
    // here by name. Only the operations above write to them.
    // Empty until a work directory is asked for or set.
    static wchar_t work_path[kMaxGivenPath + 1];
    static wchar_t tempPath[kTempPathRoom];
    static wchar_t tempFileName[kTempPathRoom];
    // The temporary file, open for writing; null while there is none.
    static std::FILE* tempFile;
    // Whether the clean-up at the end of the process is set up for the file that is open.
    static bool initTempFile;
};
