#include "http/handler.h"

#include "net/oneshot.h"

namespace velometer {

namespace asio = boost::asio;

Answer storeFailed(Service &service, int status)
{
    ++service.metrics.storeErrors;
    return Answer::sentence(status, "The store does not answer.");
}

asio::awaitable<std::string> hostName(Connection &connection, Service &service)
{
    const std::string address = connection.getPeer().to_string();
    OneShot<std::string> name(connection.executor(), service.options.nameTimeout);
    service.hostNames.lookUp(address, name.setter());
    auto found = co_await name.wait();
    co_return found ? *std::move(found) : address;
}

} // namespace velometer
