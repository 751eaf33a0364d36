#include "platform/background/ServiceThread.hpp"

#include <gtest/gtest.h>

#include <future>
#include <optional>
#include <thread>

namespace tessaly {

namespace {

class Service final : public QObject {
public:
    explicit Service(std::promise<std::thread::id> &destroyed) : m_destroyed(destroyed) {}
    ~Service() override { m_destroyed.set_value(std::this_thread::get_id()); }
    Q_DISABLE_COPY_MOVE(Service)

private:
    std::promise<std::thread::id> &m_destroyed;
};

TEST(ServiceThread, callsAndDestroysTheObjectOnAThreadOfItsOwn)
{
    std::promise<std::thread::id> destroyed;
    std::promise<std::thread::id> called;
    std::optional<ServiceThread<Service>> service;
    service.emplace(destroyed);
    service->post([&](Service &) { called.set_value(std::this_thread::get_id()); });
    const std::thread::id itsThread = called.get_future().get();
    EXPECT_NE(itsThread, std::this_thread::get_id());
    service.reset();
    EXPECT_EQ(destroyed.get_future().get(), itsThread);
}

} // namespace

} // namespace tessaly
