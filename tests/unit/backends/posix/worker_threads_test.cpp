#include "backends/posix/worker_threads.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>

#include "tests/unit/backends/posix/support.h"

namespace {

using namespace std::chrono_literals;

/// A gate that one thread opens and others wait at.
class Gate {
public:
    void open() {
        const std::lock_guard lock(mutex_);
        isOpen_ = true;
        changed_.notify_all();
    }
    void pass() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return isOpen_; });
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool isOpen_ = false;
};

class WorkerThreads : public testing::Test {
protected:
    posix::PosixWorkerThreads workers;
};

TEST_F(WorkerThreads, OnlyAWorkerHasAToken) {
    EXPECT_EQ(workers.current(), nullptr);
    os::RunToken* first = nullptr;
    os::RunToken* second = nullptr;
    bool valid = false;
    Gate bothKnown;
    const auto one = workers.start([&] {
        first = workers.current();
        valid = first != nullptr && first->valid();
        bothKnown.pass();
        return 0U;
    });
    const auto two = workers.start([&] {
        second = workers.current();
        bothKnown.open();
        return 0U;
    });
    one->close();
    two->close();
    EXPECT_TRUE(valid);
    EXPECT_NE(second, nullptr);
    EXPECT_NE(first, second);
    EXPECT_EQ(workers.current(), nullptr);
    os::RunToken* ofStranger = first;
    std::thread([&] { ofStranger = workers.current(); }).join();
    EXPECT_EQ(ofStranger, nullptr);
}

TEST_F(WorkerThreads, CloseWaitsForTheWorkersOwnEnd) {
    bool published = false;
    bool finished = false;
    const auto worker = workers.start([&] {
        std::this_thread::sleep_for(30ms);
        published = workers.current()->publish([] {});
        finished = true;
        return 7U;
    });
    worker->close();
    EXPECT_TRUE(finished);
    EXPECT_TRUE(published);
    worker->close();
    worker->terminate(0);
}

TEST_F(WorkerThreads, DestructionWaitsLikeClose) {
    bool published = false;
    auto worker = workers.start([&] {
        std::this_thread::sleep_for(30ms);
        published = workers.current()->publish([] {});
        return 0U;
    });
    worker.reset();
    EXPECT_TRUE(published);
}

TEST_F(WorkerThreads, NothingOfAKilledRunIsSeen) {
    Gate started;
    Gate killed;
    bool effect = false;
    bool published = true;
    bool valid = true;
    const auto worker = workers.start([&] {
        os::RunToken& token = *workers.current();
        const auto registration = token.onKill([&] { killed.open(); });
        started.open();
        killed.pass();
        valid = token.valid();
        published = token.publish([&] { effect = true; });
        return 0U;
    });
    started.pass();
    worker->terminate(0);
    EXPECT_FALSE(valid);
    EXPECT_FALSE(published);
    EXPECT_FALSE(effect);
    worker->terminate(0);
    worker->close();
}

TEST_F(WorkerThreads, EffectThatHasBegunIsCompleteWhenTerminateReturns) {
    Gate inside;
    int steps = 0;
    int stepsAtKill = 0;
    bool second = true;
    const auto worker = workers.start([&] {
        os::RunToken& token = *workers.current();
        const auto registration = token.onKill([&] { stepsAtKill = steps; });
        token.publish([&] {
            ++steps;
            inside.open();
            std::this_thread::sleep_for(30ms);
            ++steps;
        });
        std::this_thread::sleep_for(30ms);
        second = token.publish([&] { ++steps; });
        return 0U;
    });
    inside.pass();
    worker->terminate(0);
    EXPECT_EQ(steps, 2);
    EXPECT_EQ(stepsAtKill, 2) << "the kill must not run in the middle of an effect";
    EXPECT_FALSE(second);
}

TEST_F(WorkerThreads, TerminateAfterTheWorkersOwnEndIsHarmless) {
    Gate done;
    const auto worker = workers.start([&] {
        const auto registration = workers.current()->onKill([] { FAIL(); });
        done.open();
        return 0U;
    });
    done.pass();
    std::this_thread::sleep_for(20ms);
    worker->terminate(0);
}

TEST_F(WorkerThreads, EveryKillRunsOnceOnTheTerminatingThread) {
    Gate started;
    Gate killed;
    std::vector<std::thread::id> threads;
    const auto worker = workers.start([&] {
        os::RunToken& token = *workers.current();
        const auto note = [&] { threads.push_back(std::this_thread::get_id()); };
        const auto first = token.onKill(note);
        const auto second = token.onKill(note);
        const auto last = token.onKill([&] { killed.open(); });
        started.open();
        killed.pass();
        return 0U;
    });
    started.pass();
    worker->terminate(0);
    worker->terminate(0);
    EXPECT_EQ(threads, std::vector(2, std::this_thread::get_id()));
}

TEST_F(WorkerThreads, DroppedRegistrationIsNotCalled) {
    Gate started;
    Gate killed;
    bool called = false;
    const auto worker = workers.start([&] {
        os::RunToken& token = *workers.current();
        token.onKill([&] { called = true; }).reset();
        const auto kept = token.onKill([&] { killed.open(); });
        started.open();
        killed.pass();
        return 0U;
    });
    started.pass();
    worker->terminate(0);
    EXPECT_FALSE(called);
}

TEST_F(WorkerThreads, RegistrationWithADeadRunIsCalledAtOnce) {
    Gate started;
    Gate killed;
    int calls = 0;
    int callsInside = 0;
    const auto worker = workers.start([&] {
        os::RunToken& token = *workers.current();
        const auto first = token.onKill([&] { killed.open(); });
        started.open();
        killed.pass();
        const auto late = token.onKill([&] { ++calls; });
        callsInside = calls;
        return 0U;
    });
    started.pass();
    worker->terminate(0);
    EXPECT_EQ(callsInside, 1);
    EXPECT_EQ(calls, 1);
}

TEST_F(WorkerThreads, DroppingARegistrationWaitsForItsKill) {
    Gate started;
    Gate killing;
    std::atomic<bool> finished = false;
    bool finishedWhenDropped = false;
    const auto worker = workers.start([&] {
        auto registration = workers.current()->onKill([&] {
            killing.open();
            std::this_thread::sleep_for(50ms);
            finished = true;
        });
        started.open();
        killing.pass();
        registration.reset();
        finishedWhenDropped = finished;
        return 0U;
    });
    started.pass();
    worker->terminate(0);
    EXPECT_TRUE(finishedWhenDropped);
}

TEST_F(WorkerThreads, KillMayDropItsOwnRegistration) {
    Gate started;
    Gate killed;
    std::shared_ptr<void> registration;
    const auto worker = workers.start([&] {
        registration = workers.current()->onKill([&] {
            registration.reset();
            killed.open();
        });
        started.open();
        killed.pass();
        return 0U;
    });
    started.pass();
    worker->terminate(0);
    EXPECT_EQ(registration, nullptr);
}

TEST_F(WorkerThreads, RegistrationMayOutliveTheRun) {
    std::shared_ptr<void> registration;
    {
        const auto worker = workers.start([&] {
            registration = workers.current()->onKill([] { FAIL(); });
            return 0U;
        });
        worker->close();
    }
    registration.reset();
}

TEST_F(WorkerThreads, EffectMayPublishAPartOfItself) {
    bool inner = false;
    const auto worker = workers.start([&] {
        os::RunToken& token = *workers.current();
        token.publish([&] { inner = token.publish([] {}); });
        return 0U;
    });
    worker->close();
    EXPECT_TRUE(inner);
}

TEST_F(WorkerThreads, ExceptionEndsTheWorkerOnly) {
    const auto one = workers.start([]() -> std::uint32_t { throw std::runtime_error("broken"); });
    const auto two = workers.start([]() -> std::uint32_t { throw 1; });
    one->close();
    two->close();
    bool ran = false;
    workers
        .start([&] {
            ran = true;
            return 0U;
        })
        ->close();
    EXPECT_TRUE(ran);
}

TEST_F(WorkerThreads, NoThreadToBeHadIsNull) {
    pthread_attr_t before;
    pthread_attr_t huge;
    ASSERT_EQ(::pthread_getattr_default_np(&before), 0);
    ASSERT_EQ(::pthread_getattr_default_np(&huge), 0);
    ASSERT_EQ(::pthread_attr_setstacksize(&huge, std::size_t{1} << 50), 0);
    ASSERT_EQ(::pthread_setattr_default_np(&huge), 0);
    bool ran = false;
    const auto worker = workers.start([&] {
        ran = true;
        return 0U;
    });
    ASSERT_EQ(::pthread_setattr_default_np(&before), 0);
    EXPECT_EQ(worker, nullptr);
    EXPECT_FALSE(ran);
}

/// What a comparison leaves behind: status and path belong together.
struct Outcome {
    int status = -1;
    std::string path;
    int progress = 0;
};

TEST_F(WorkerThreads, RunsKilledAtRandomMomentsLeaveNoTraceBehind) {
    std::mt19937 random(7);
    int finished = 0;
    int interrupted = 0;
    for (int round = 0; round < 200; ++round) {
        Outcome outcome;  // plain fields: a race would be reported by the thread sanitizer
        std::atomic<bool> stop = false;
        const unsigned steps = static_cast<unsigned>(random() % 200);
        const auto worker = workers.start([&] {
            os::RunToken& token = *workers.current();
            const auto registration = token.onKill([&] { stop = true; });
            for (unsigned i = 0; i < steps && !stop; ++i) {
                token.publish([&] { ++outcome.progress; });
                std::this_thread::sleep_for(std::chrono::microseconds(10));
            }
            token.publish([&] {
                outcome.status = 0;
                outcome.path = "/tmp/result-" + std::to_string(steps);
            });
            return 0U;
        });
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 15'000));
        worker->terminate(0);
        const Outcome seen = outcome;
        ASSERT_EQ(seen.status == 0, !seen.path.empty()) << round;
        std::this_thread::sleep_for(100us);
        ASSERT_EQ(outcome.progress, seen.progress) << round;
        ASSERT_EQ(outcome.path, seen.path) << round;
        ++(seen.status == 0 ? finished : interrupted);
    }
    // Both kinds must have occurred, or the moments were not random enough.
    EXPECT_GT(finished, 0);
    EXPECT_GT(interrupted, 0);
}

}  // namespace
