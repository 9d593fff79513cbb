#include "automation/floating_control.h"

#include <utility>

namespace automation {
namespace {

const FloatingControl* exchange_clients_control(const FloatingControl* control) noexcept
{
    ThreadState* const thread = ThreadState::find();
    return thread ? std::exchange(thread->clients_control, control) : nullptr;
}

} // namespace

void CalculatesQuietly::enter() noexcept
{
    quiet_control.replace(clients_);
    outer_ = std::exchange(thread_.clients_control, &clients_);
}

void CalculatesQuietly::leave() noexcept
{
    thread_.clients_control = outer_;
    clients_.replace(quiet_control);
}

CalculatesAsClient::CalculatesAsClient() noexcept : clients_{exchange_clients_control(nullptr)}
{
    if (clients_)
        clients_->replace(FloatingControl::now());
}

CalculatesAsClient::~CalculatesAsClient()
{
    const FloatingControl left = FloatingControl::now();
    if (!left.calculates_like(quiet_control))
        quiet_control.replace(left);
    exchange_clients_control(clients_);
}

} // namespace automation
