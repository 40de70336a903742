#include "net/tls.h"

#include <ctime>

#include <openssl/ssl.h>
#include <openssl/x509.h>

using namespace Qt::StringLiterals;

namespace velometer {

namespace ssl = boost::asio::ssl;

namespace {

qint64 expiryOf(const X509 *certificate)
{
    std::tm moment{};
    const bool known =
        certificate && ASN1_TIME_to_tm(X509_get0_notAfter(certificate), &moment) == 1;
    return known ? qint64{::timegm(&moment)} * 1000 : 0;
}

} // namespace

std::shared_ptr<TlsContext> makeTlsContext(const QString &certificate, const QString &key,
                                           QString *problem)
{
    auto made = std::make_shared<TlsContext>();
    boost::system::error_code failure;
    const auto fail = [&](const QString &file, const QString &what) {
        *problem = u"The %1 %2 cannot be used: %3."_s.arg(
            what, file, QString::fromStdString(failure.message()));
        return nullptr;
    };
    made->context.set_options(ssl::context::no_tlsv1 | ssl::context::no_tlsv1_1, failure);
    made->context.use_certificate_chain_file(certificate.toStdString(), failure);
    if (failure) {
        return fail(certificate, u"certificate"_s);
    }
    // Refuses a key that is not the certificate's.
    made->context.use_private_key_file(key.toStdString(), ssl::context::pem, failure);
    if (failure) {
        return fail(key, u"certificate's key"_s);
    }
    SSL_CTX *const handle = made->context.native_handle();
    // Buffers of a connection that waits go back.
    SSL_CTX_set_mode(handle, SSL_MODE_RELEASE_BUFFERS);
    made->expires = expiryOf(SSL_CTX_get0_certificate(handle));
    return made;
}

} // namespace velometer
