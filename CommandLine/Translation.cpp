#include "Translation.h"

#include "ProgramFolder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <cstring>

#include <libintl.h>
#include <unistd.h>

// The C library's gettext finds the texts. It takes the language from the locale of the running thread, which is the user's only while
// a text is looked up: everywhere else, in the log above all, the C library goes on speaking English.

namespace orvane {

namespace {

constexpr const char *Domain = "orvane";
constexpr const char *Encoding = "UTF-8";
/// Where the catalogues are, seen from the program: beside `bin`, as installed and as built, and from `libexec/orvane`.
constexpr std::array<const char *, 2> Folders = {ORVANE_LOCALE_FROM_BIN, ORVANE_LOCALE_FROM_LIBEXEC};
/// A locale that every system has, and in which LANGUAGE counts, for users of one that is not installed.
constexpr const char *PlainLocale = "C.UTF-8";

bool mayTranslate = false;

std::string_view variable(const char *name) {
    const char *const value = std::getenv(name);
    return value == nullptr ? std::string_view() : std::string_view(value);
}

/// The user's locale for messages, in the order of POSIX (XBD, 8.2).
std::string_view nameOfLocale() {
    for (const char *const name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        if (const std::string_view value = variable(name); !value.empty()) {
            return value;
        }
    }
    return {};
}

/// Whether a language is the one of the sources.
bool isEnglish(std::string_view language) {
    const std::string_view name = language.substr(0, language.find_first_of("_.@"));
    return name.empty() || name == "en" || name == "C" || name == "POSIX";
}

/// What gettext would find out, without asking it (GNU gettext manual, 2.3: LANGUAGE goes first, but not in the locale "C"): the
/// languages that the user wants, the best first, with colons between them.
std::string_view wantedLanguages() {
    const std::string_view locale = nameOfLocale();
    if (locale.empty() || locale == "C" || locale == "POSIX") {
        return {};
    }
    const std::string_view languages = variable("LANGUAGE");
    return languages.empty() ? locale : languages;
}

bool englishIsWantedMost() {
    std::string_view languages = wantedLanguages();
    languages.remove_prefix(std::min(languages.find_first_not_of(':'), languages.size()));
    return isEnglish(languages.substr(0, languages.find(':')));
}

bool hasCatalogue(const std::string &folder, std::string_view language) {
    const std::string name(language.substr(0, language.find_first_of("_.@")));
    return ::access((folder + '/' + name + "/LC_MESSAGES/" + Domain + ".mo").c_str(), R_OK) == 0;
}

/// Whether English comes first of the wanted languages that are spoken here. There is no catalogue for the language of the sources:
/// gettext would go on to the next one.
bool asksForEnglish(const std::string &folder) {
    for (std::string_view left = wantedLanguages(); !left.empty();) {
        const std::string_view language = left.substr(0, left.find(':'));
        left.remove_prefix(std::min(language.size() + 1, left.size()));
        if (!language.empty() && (isEnglish(language) || hasCatalogue(folder, language))) {
            return isEnglish(language);
        }
    }
    return true;
}

/// The folder of the catalogues; empty when there is none.
std::string folderOfCatalogues() {
    const std::string program = folderOfProgram();
    for (const char *const folder : Folders) {
        if (std::string path = program + folder; !program.empty() && ::access(path.c_str(), X_OK) == 0) {
            return path;
        }
    }
    return {};
}

/// The user's locale for messages alone, catalogues bound; null for English, and when there is none.
locale_t openLocale() {
    const std::string folder = englishIsWantedMost() ? std::string() : folderOfCatalogues(); // most need not look for any file
    if (folder.empty() || asksForEnglish(folder)) {
        return nullptr;
    }
    const locale_t wanted = ::newlocale(LC_MESSAGES_MASK, std::string(nameOfLocale()).c_str(), nullptr);
    ::bindtextdomain(Domain, folder.c_str());
    ::bind_textdomain_codeset(Domain, Encoding);
    ::bind_textdomain_codeset("libc", Encoding); // the C library's own texts, which would be ASCII otherwise
    return wanted != nullptr ? wanted : ::newlocale(LC_MESSAGES_MASK, PlainLocale, nullptr);
}

/// The user's locale for messages; null while everything is English. It is never freed: texts may be wanted until the end.
locale_t usersLocale() {
    static const locale_t opened = openLocale();
    return opened;
}

/// Makes the user's locale the one of this thread for a while; keeps `errno`.
class UsersLocale {
public:
    UsersLocale() : _locale(mayTranslate ? usersLocale() : nullptr) {
        if (_locale != nullptr) {
            _before = ::uselocale(_locale);
        }
    }
    UsersLocale(const UsersLocale &) = delete;
    UsersLocale &operator=(const UsersLocale &) = delete;
    ~UsersLocale() {
        if (_locale != nullptr) {
            ::uselocale(_before);
        }
        errno = _error;
    }
    [[nodiscard]] bool isForeign() const { return _locale != nullptr; }

private:
    const int _error = errno;
    const locale_t _locale;
    locale_t _before = nullptr;
};

struct KnownError {
    int error;
    const char *text;
};
/// What may well happen, so that it is told in the user's language even where the C library's own catalogues are not installed.
constexpr std::array<KnownError, 24> KnownErrors = {{{EPERM, forTranslation("Operation not permitted")},
                                                     {ENOENT, forTranslation("No such file or directory")},
                                                     {EIO, forTranslation("Input/output error")},
                                                     {EBADF, forTranslation("Bad file descriptor")},
                                                     {ENOMEM, forTranslation("Cannot allocate memory")},
                                                     {EACCES, forTranslation("Permission denied")},
                                                     {EBUSY, forTranslation("Device or resource busy")},
                                                     {EEXIST, forTranslation("File exists")},
                                                     {EXDEV, forTranslation("Invalid cross-device link")},
                                                     {ENOTDIR, forTranslation("Not a directory")},
                                                     {EISDIR, forTranslation("Is a directory")},
                                                     {EINVAL, forTranslation("Invalid argument")},
                                                     {ENFILE, forTranslation("Too many open files in system")},
                                                     {EMFILE, forTranslation("Too many open files")},
                                                     {EFBIG, forTranslation("File too large")},
                                                     {ENOSPC, forTranslation("No space left on device")},
                                                     {EROFS, forTranslation("Read-only file system")},
                                                     {EPIPE, forTranslation("Broken pipe")},
                                                     {ENAMETOOLONG, forTranslation("File name too long")},
                                                     {ENOEXEC, forTranslation("Exec format error")},
                                                     {ELOOP, forTranslation("Too many levels of symbolic links")},
                                                     {EOPNOTSUPP, forTranslation("Operation not supported")},
                                                     {ESTALE, forTranslation("Stale file handle")},
                                                     {EDQUOT, forTranslation("Disk quota exceeded")}}};

} // namespace

void speakUsersLanguage() {
    mayTranslate = true;
}

const char *localized(const char *text) {
    const UsersLocale locale;
    return locale.isForeign() && *text != '\0' ? ::dgettext(Domain, text) : text; // the empty text stands for the catalogue's head
}

std::string localized(const char *text, const std::vector<std::string> &arguments) {
    return textWithArguments(localized(text), arguments);
}

std::string localizedCount(const char *one, const char *many, std::size_t count, const std::vector<std::string> &arguments) {
    std::vector<std::string> all{std::to_string(count)};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const UsersLocale locale;
    return textWithArguments(locale.isForeign() ? ::dngettext(Domain, one, many, count) : count == 1 ? one : many, all);
}

std::string withReason(std::string_view about, std::string_view reason) {
    return localized("%1: %2", {std::string(about), std::string(reason)});
}

std::string textOfError(int error) {
    const UsersLocale locale;
    if (!locale.isForeign()) {
        return std::strerror(error);
    }
    for (const KnownError &known : KnownErrors) {
        if (known.error == error) {
            return localized(known.text);
        }
    }
    return std::strerror(error);
}

} // namespace orvane
