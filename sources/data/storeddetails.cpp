#include "data/storeddetails.h"

#include "context/doublelocation.h"
#include "data/testdetails.h"
#include "figures/testfields.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {

/// Stands beside the figures of a test that has all of them.
constexpr auto everythingKey = "everything"_L1;

/// What is counted is stored as an integer, what is measured as a double.
bool isCount(Unit unit)
{
    return unit == Unit::Bytes || unit == Unit::Percent || unit == Unit::Identity;
}

/// 0 stood for the unknown in older details, but a test can do with no byte and without a signal.
bool saysNothing(const QVariant &value, Unit unit)
{
    return value.typeId() != QMetaType::QString && value.toDouble() == 0.0 && unit != Unit::Bytes &&
           unit != Unit::Percent && unit != Unit::Decibels;
}

/// Coordinates that are no place, and the altitude of a place without one, become unknown.
void settle(FinishedTest::Position &position)
{
    const double latitude = position.latitude.value_or(0);
    const double longitude = position.longitude.value_or(0);
    const bool somewhere = latitude != 0.0 || longitude != 0.0;
    if (!somewhere || !(std::abs(latitude) <= 90 && std::abs(longitude) <= 180)) {
        position = {};
        return;
    }
    position.latitude = latitude;
    position.longitude = longitude;
    if (position.altitude == noAltitude) {
        position.altitude.reset();
    }
}

} // namespace

std::unique_ptr<TestDetails> StoredDetails::of(const FinishedTest &test)
{
    auto details = std::make_unique<TestDetails>(nullptr, test.storedId.value_or(0));
    details->putLong(everythingKey, 1);
    for (const TestField &each : TestFields::all()) {
        const QVariant value = each.stored.isEmpty() ? QVariant() : each.get(test);
        if (!value.isValid()) {
            continue;
        }
        const QString key = each.stored;
        if (value.typeId() == QMetaType::QString) {
            details->putString(key, value.toString());
        } else if (value.typeId() == QMetaType::Bool || isCount(each.unit)) {
            details->putLong(key, value.toLongLong());
        } else {
            details->putDouble(key, value.toDouble());
        }
    }
    return details;
}

void StoredDetails::read(const TestDetails &details, FinishedTest &test)
{
    const bool everything = haveEverything(details);
    for (const TestField &each : TestFields::all()) {
        const QVariant value = details.getData().value(each.stored);
        if (each.set && value.isValid() && (everything || !saysNothing(value, each.unit))) {
            each.set(test, value);
        }
    }
    settle(test.position);
}

bool StoredDetails::haveEverything(const TestDetails &details)
{
    return details.contains(everythingKey);
}

} // namespace velometer
