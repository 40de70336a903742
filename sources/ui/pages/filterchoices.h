#pragma once

#include "app/resultlisting.h"
#include "ui/frame/choice.h"

/// The questions behind the chips of results and history, and what the chips say. Texts are in the
/// user's language.
namespace velometer::FilterChoices {

/// What is to happen with the changed filter.
using Apply = std::function<void(const ResultFilter &)>;

Choice connection(const ResultFilter &filter, const Apply &apply);
Choice period(const ResultFilter &filter, const Apply &apply);
/// @p codes and @p hosts: what there is to choose from.
Choice place(const ResultFilter &filter, const QStringList &codes, const Apply &apply);
Choice server(const ResultFilter &filter, const QStringList &hosts, const Apply &apply);
Choice order(ResultListing::Order order, const std::function<void(ResultListing::Order)> &apply);

/// What is chosen, or what could be where nothing is.
QString connectionText(const ResultFilter &filter);
QString periodText(ResultFilter::Period period);
QString placeText(const ResultFilter &filter);
QString serverText(const ResultFilter &filter);
QString orderText(ResultListing::Order order);

} // namespace velometer::FilterChoices
