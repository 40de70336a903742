#pragma once

#include <QString>

#include <boost/asio/ssl/context.hpp>

#include <memory>

namespace velometer {

/// A certificate with its key, ready for connections: TLS 1.2 and 1.3, nothing older.
struct TlsContext
{
    TlsContext()
        : context(boost::asio::ssl::context::tls_server)
    {}

    boost::asio::ssl::context context;
    qint64 expires = 0; ///< ms since 1970
};

/// Reads a PEM file with the certificate, the intermediate ones behind it, and one with its key.
/// Null on failure; @p problem then says in a sentence why.
std::shared_ptr<TlsContext> makeTlsContext(const QString &certificate, const QString &key,
                                           QString *problem);

} // namespace velometer
