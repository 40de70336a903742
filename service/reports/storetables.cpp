#include "reports/storetables.h"

#include <array>

using namespace Qt::StringLiterals;

namespace velometer::StoreTables {

namespace {

QStringList words(const QString &text)
{
    return text.split(u' ');
}

} // namespace

std::span<const Table> all()
{
    static const std::array<Table, 7> tables{
        Table{.name = u"users"_s,
              .user = u"id"_s,
              .key = {u"id"_s},
              .columns = words(u"uuid created deleted erased changes"_s)},
        Table{.name = u"reports"_s,
              .user = u"userid"_s,
              .key = {u"id"_s},
              .columns = words(
                  u"userid seriesid testid client_time server_time public_ip test_server "
                  "connection_type location network mcc mnc platform model manufacturer "
                  "applet_version download_min download_avg download_max upload_min upload_avg "
                  "upload_max upload_client_min upload_client_avg upload_client_max rtt_min "
                  "rtt_avg rtt_max latitude longitude document verified service_late type operator "
                  "download_rate upload_rate rtt bytes accuracy note download_rtt upload_rtt"_s)},
        Table{.name = u"streams"_s,
              .user = u"userid"_s,
              .key = words(u"userid seriesid testid direction"_s),
              .columns = words(u"ended bytes lasted_ms min avg max late kernel reported"_s)},
        Table{.name = u"shares"_s,
              .user = u"userid"_s,
              .key = {u"key"_s},
              .columns = words(u"userid filter positions created expires"_s)},
        Table{.name = u"tracks"_s,
              .user = u"userid"_s,
              .key = {u"id"_s},
              .columns = words(u"userid track started ended points"_s)},
        Table{.name = u"trackparts"_s,
              .user = u"userid"_s,
              .key = words(u"trackid first"_s),
              .columns = words(u"userid document"_s)},
        Table{.name = u"trackcells"_s,
              .user = u"userid"_s,
              .key = {u"id"_s},
              .columns = words(u"userid trackid latitude longitude type rsrp points"_s)}};
    return tables;
}

} // namespace velometer::StoreTables
