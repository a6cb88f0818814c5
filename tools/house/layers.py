"""Which folder may include which, as data. docs/02-architecture.md draws the same table.

A file belongs to the longest folder below that is a prefix of its path. A folder may always
include itself. Every name in a row was put there on purpose: an include that no row allows is an
error, so that a new dependency is a change of this file and is seen in review.
"""

PLATFORM = ("platform/os", "platform/hps", "platform/bxt", "platform/exchange", "platform/ui")

# What a product folder may use, from the bottom up; each row adds the one before it.
_EXTRACT = PLATFORM
_DIFF = ("extract",) + _EXTRACT
_SETTINGS = ("resources",) + PLATFORM
_REPORTS = ("diff", "shell/settings", "resources") + _DIFF
_RESULTS = ("reports",) + _REPORTS
_WORKFLOW = ("results",) + _RESULTS
_SHELL = ("workflow",) + _WORKFLOW

BACKENDS = (
    "backends/posix",
    "backends/prc",
    "backends/mesh",
    "backends/occt",
    "backends/comparer",
    "backends/headless",
    "backends/qt",
)

# folder -> (folders it may include, third parties it may include)
FOLDERS = {
    "platform/os": ((), ()),
    "platform/hps": (("platform/os",), ()),
    "platform/bxt": (("platform/hps", "platform/os"), ()),
    "platform/exchange": (("platform/bxt", "platform/hps", "platform/os"), ()),
    "platform/ui": (("platform/os",), ()),
    # Registers its tables with the platform's resource loader, and shapes dialogs in its terms.
    "resources": (("platform/bxt", "platform/ui"), ()),
    "extract": (_EXTRACT, ()),
    "diff": (_DIFF, ()),
    "shell/settings": (_SETTINGS, ()),
    "reports": (_REPORTS, ()),
    "reports/pdf": (("reports",) + _REPORTS, ("libharu",)),
    "results": (_RESULTS, ()),
    "workflow": (_WORKFLOW, ()),
    "shell": (_SHELL, ()),
    "backends/posix": (PLATFORM, ("os", "seccomp")),
    "backends/prc": (PLATFORM, ()),
    "backends/mesh": (PLATFORM, ("json", "lib3mf")),
    "backends/occt": (PLATFORM + ("backends/prc", "backends/mesh"), ("occt", "zlib")),
    "backends/comparer": (PLATFORM + ("backends/occt",), ("occt",)),
    "backends/headless": (PLATFORM, ()),
    "backends/qt": (PLATFORM + ("backends/occt",), ("occt", "qt")),
    "apps/cli": (PLATFORM + BACKENDS, ("os", "cli11", "json")),
    "apps/helper": (PLATFORM + BACKENDS, ("os",)),
    "apps/viewer": (PLATFORM + BACKENDS, ("os", "qt")),
}

# Folders around the product: they may include anything but are included by nobody outside them,
# except that benchmarks share the tests' models.
FREE = ("tests", "samples", "bench", "tools")
FREE_MAY_INCLUDE = {"tests": ("samples",), "samples": (), "bench": ("tests", "samples"), "tools": ()}

PRODUCT = (
    "resources", "extract", "diff", "shell/settings", "reports", "reports/pdf", "results",
    "workflow", "shell",
)

# Third parties by the headers that they are known by.
THIRD_PARTIES = {
    "occt": r"[A-Za-z0-9_]+\.(hxx|lxx|gxx)",
    "qt": r"(Qt[A-Za-z0-9]+/.+|Q[A-Z][A-Za-z0-9]*|qt?[a-z]+\.h)",
    "cli11": r"CLI/.+",
    "json": r"nlohmann/.+",
    "lib3mf": r"Model/COM/NMR_.+\.h",
    "libharu": r"hpdf[a-z_0-9]*\.h",
    "zlib": r"zlib\.h",
    "seccomp": r"seccomp\.h",
    "googletest": r"g(test|mock)/.+",
    "benchmark": r"benchmark/.+",
    "os": r"((sys|linux|asm|arpa|net|netinet|X11|xcb)/.+"
          r"|(aio|dirent|dlfcn|elf|execinfo|fcntl|fnmatch|ftw|getopt|glob|grp|iconv|langinfo|link"
          r"|malloc|mqueue|netdb|poll|pthread|pty|pwd|regex|sched|semaphore|signal|spawn|strings|syslog"
          r"|termios|ucontext|unistd|utime|wordexp|windows|winsock2|process|io|direct|tchar)\.h)",
}

# Libraries that a target may link, by the third party of its folder.
THIRD_PARTY_LIBRARIES = {
    "occt": r"TK[A-Za-z0-9]+",
    "qt": r"Qt6::.+",
    "cli11": r"CLI11::CLI11",
    "json": r"nlohmann_json::nlohmann_json",
    "lib3mf": r"3MF",
    "libharu": r"(hpdf|libharu.*)",
    "zlib": r"ZLIB::ZLIB",
    "seccomp": r"seccomp",
    "googletest": r"GTest::.+",
    "benchmark": r"benchmark::.+",
    "os": r"(dl|rt|Threads::Threads|pthread)",
}

STANDARD_HEADERS = frozenset("""
algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat charconv chrono
cinttypes climits clocale cmath codecvt compare complex concepts condition_variable coroutine
csetjmp csignal cstdarg cstddef cstdint cstdio cstdlib cstring ctime cuchar cwchar cwctype deque
exception execution filesystem format forward_list fstream functional future initializer_list
iomanip ios iosfwd iostream istream iterator latch limits list locale map memory memory_resource
mutex new numbers numeric optional ostream queue random ranges ratio regex scoped_allocator
semaphore set shared_mutex source_location span sstream stack stdexcept stop_token streambuf
string string_view syncstream system_error thread tuple type_traits typeindex typeinfo
unordered_map unordered_set utility valarray variant vector version
""".split())

# Standard headers that reach past the program: product code asks platform/os instead, which tests
# replace by fakes and which decides what a kill of the worker undoes.
MACHINE_HEADERS = frozenset(
    "filesystem fstream thread future iostream csignal csetjmp clocale locale ctime chrono".split())


def folder_of(path, known=None):
    """The row that a repository path belongs to, or None."""
    names = list(FOLDERS) + list(FREE) if known is None else known
    best = None
    for name in names:
        if (path == name or path.startswith(name + "/")) and (best is None or len(name) > len(best)):
            best = name
    return best


def may_include(folder, target):
    """True when a file of `folder` may include a file of `target`."""
    if folder == target:
        return True
    if folder in FREE:
        return target not in FREE or target in FREE_MAY_INCLUDE[folder]
    return target in FOLDERS[folder][0]


def third_parties_of(folder):
    """Names of the third parties that a folder may use; None means all of them."""
    return None if folder in FREE else FOLDERS[folder][1]
