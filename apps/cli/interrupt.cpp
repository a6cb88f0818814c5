#include "apps/cli/interrupt.h"

#include <csignal>

namespace cli {
namespace {

volatile std::sig_atomic_t received = 0;

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
