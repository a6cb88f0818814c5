#include "apps/cli/interrupt.h"

#include <atomic>
#include <csignal>
#include <initializer_list>

namespace cli {
namespace {

// Lock-free, so a handler may write it.
std::atomic<int> received{0};

void onSignal(int signal) {
    received = signal;
}

}  // namespace

void catchInterrupts() {
    struct sigaction action = {};
    action.sa_handler = onSignal;
    // The handler goes after one use: a run that does not end can still be ended.
    action.sa_flags = SA_RESETHAND | SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before = {};
        sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN) sigaction(signal, &action, nullptr);
    }
    struct sigaction ignore = {};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &ignore, nullptr);
}

int interrupted() {
    return received;
}

}  // namespace cli
