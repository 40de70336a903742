#include "cli/serverformat.h"

#include "data/testserver.h"
#include "figures/csvformat.h"
#include "utils/cleantext.h"

using namespace Qt::StringLiterals;

namespace velometer::ServerFormat {

QJsonObject json(const TestServer &server, bool selected)
{
    return {{u"name"_s, cleanText(server.getName())},
            {u"host"_s, cleanText(server.getHostname())},
            {u"port"_s, server.getPort()},
            {u"city"_s, cleanText(server.getCity())},
            {u"state"_s, cleanText(server.getState())},
            {u"country"_s, cleanText(server.getCountry())},
            {u"selected"_s, selected}};
}

QByteArray csvHeader()
{
    return CsvFormat::line(
        {u"name"_s, u"host"_s, u"port"_s, u"city"_s, u"state"_s, u"country"_s, u"selected"_s});
}

QByteArray csv(const TestServer &server, bool selected)
{
    return CsvFormat::line(
        {CsvFormat::cell(server.getName()), CsvFormat::cell(server.getHostname()),
         QString::number(server.getPort()), CsvFormat::cell(server.getCity()),
         CsvFormat::cell(server.getState()), CsvFormat::cell(server.getCountry()),
         selected ? u"true"_s : u"false"_s});
}

} // namespace velometer::ServerFormat
