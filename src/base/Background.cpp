#include "base/Background.h"

#include <QtGlobal>

namespace tonequill {

namespace {

QCoro::Task<> guarded(QCoro::Task<> flow)
{
    try {
        co_await flow;
    } catch (const Cancelled&) {
    } catch (const std::exception& error) {
        qFatal("A flow ended with an unhandled error: %s", error.what());
    }
}

} // namespace

void startFlow(QCoro::Task<> flow)
{
    guarded(std::move(flow));
}

} // namespace tonequill
