#include "backends/occt/read/measure.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <thread>

#include "backends/occt/body_identity.h"
#include "backends/occt/content_digest.h"
#include "platform/hps/component_type.h"

namespace occt {
namespace {

void measure(const Measurement& body) {
    const bool isBody = body.item->type == HPS::ComponentType::BrepModel ||
                        body.item->type == HPS::ComponentType::PolyBrepModel;
    if (isBody) body.item->identity = bodyIdentity(body.shape);
    body.item->closed = body.item->identity && isClosedBody(body.shape);
    body.item->digest = contentDigest(body.shape);
}

}  // namespace

void measureBodies(const std::vector<Measurement>& bodies,
                   const std::function<void(double)>& progress) {
    std::atomic<std::size_t> next = 0;
    std::exception_ptr failure;
    std::mutex failureMutex;
    const auto work = [&](const std::function<void(double)>& report) {
        try {
            for (std::size_t i = next++; i < bodies.size(); i = next++) {
                measure(bodies[i]);
                if (report) report(static_cast<double>(i) / static_cast<double>(bodies.size()));
            }
        } catch (...) {
            // Memory ran out; the calling thread tells.
            const std::lock_guard lock(failureMutex);
            failure = std::current_exception();
            next = bodies.size();
        }
    };
    const std::size_t count =
        std::min<std::size_t>(std::max(1U, std::thread::hardware_concurrency()), bodies.size());
    std::vector<std::jthread> helpers;
    for (std::size_t i = 1; i < count; ++i) helpers.emplace_back([&work] { work({}); });
    work(progress);
    helpers.clear();
    if (failure) std::rethrow_exception(failure);
}

}  // namespace occt
