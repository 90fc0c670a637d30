#include "app/services/http/budgeted_http_client.h"

#include "base/files/file.h"
#include "base/files/file_lock.h"
#include "base/json/json_codec.h"
#include "base/text/number.h"
#include "base/text/text.h"
#include "feeds/fetching/kept_record.h"

#include <algorithm>
#include <tuple>

namespace nimbara {

template <>
inline constexpr auto jsonFields<OpenMeteoSpending> =
    FieldList{field("minute", &OpenMeteoSpending::minute), field("day", &OpenMeteoSpending::day),
              field("inMinute", &OpenMeteoSpending::inMinute), field("inDay", &OpenMeteoSpending::inDay)};

namespace {

constexpr std::size_t kLargestFile = 1000;
constexpr double kVariablesACall = 10;
constexpr double kDaysACall = 14;
constexpr double kUsualDays = 7;

std::string_view parameter(std::string_view url, std::string_view name) {
  std::size_t const query = url.find('?');
  if (query == std::string_view::npos) return {};
  for (std::string_view const part : split(url.substr(query + 1), '&')) {
    if (part.starts_with(name) && part.substr(name.size()).starts_with('='))
      return part.substr(name.size() + 1);
  }
  return {};
}

double countOf(std::string_view list) {
  return list.empty() ? 0 : static_cast<double>(std::ranges::count(list, ',') + 1);
}

double daysOf(std::string_view url) {
  auto const first = parseDate(parameter(url, "start_date"));
  auto const last = parseDate(parameter(url, "end_date"));
  if (first && last)
    return static_cast<double>((std::chrono::sys_days(*last) - std::chrono::sys_days(*first)).count() + 1);
  return parseDouble(parameter(url, "forecast_days")).value_or(kUsualDays) +
         parseDouble(parameter(url, "past_days")).value_or(0);
}

bool isFree(std::string_view url) {
  constexpr std::string_view kScheme = "https://";
  if (!url.starts_with(kScheme)) return false;
  std::string_view const host = url.substr(kScheme.size(), url.find('/', kScheme.size()) - kScheme.size());
  bool const isService = host == "api.open-meteo.com" || host.ends_with("-api.open-meteo.com");
  return isService && !host.starts_with("customer-") && parameter(url, "apikey").empty();
}

}  // namespace

double openMeteoCalls(std::string_view url) {
  if (!isFree(url)) return 0;
  double variables = 0;
  for (std::string_view const block : {"hourly", "daily", "current", "minutely_15"})
    variables += countOf(parameter(url, block));
  double const share = variables / kVariablesACall;
  double const calls = std::max(share, share * daysOf(url) / kDaysACall);
  return std::max(1.0, countOf(parameter(url, "latitude"))) * std::max(1.0, calls);
}

std::string_view OpenMeteoSpending::spend(double calls, Instant now) {
  std::int64_t const thisMinute = now.time_since_epoch() / std::chrono::minutes(1);
  std::int64_t const today = now.time_since_epoch() / std::chrono::hours(24);
  if (minute != thisMinute) std::tie(minute, inMinute) = std::pair(thisMinute, 0.0);
  if (day != today) std::tie(day, inDay) = std::pair(today, 0.0);
  if (inDay > 0 && inDay + calls > kCallsADay) return "Daily";
  if (inMinute > 0 && inMinute + calls > kCallsAMinute) return "Minutely";
  inMinute += calls;
  inDay += calls;
  return {};
}

BudgetedHttpClient::BudgetedHttpClient(HttpClient& network, Clock const& clock, std::filesystem::path file)
    : network_(network), clock_(clock), file_(std::move(file)) {}

/// A file that cannot be locked or written to leaves this process's own count.
std::string_view BudgetedHttpClient::refusal(double calls) {
  std::lock_guard const turn(turn_);
  if (file_.empty()) return spent_.spend(calls, clock_.now());
  std::error_code ignored;
  std::filesystem::create_directories(file_.parent_path(), ignored);
  FileLock const lock(std::filesystem::path(file_) += ".lock");
  if (auto const kept = keptRecord<OpenMeteoSpending>(file_, kLargestFile)) spent_ = *kept;
  std::string_view const refused = spent_.spend(calls, clock_.now());
  if (refused.empty()) std::ignore = writeFileAtomically(file_, encodeJson(spent_));
  return refused;
}

Result<HttpResponse, HttpError> BudgetedHttpClient::get(HttpRequest const& request, std::stop_token stop) {
  double const calls = openMeteoCalls(request.url);
  std::string_view const refused = calls > 0 ? refusal(calls) : std::string_view();
  if (refused.empty()) return network_.get(request, std::move(stop));
  return HttpResponse{
      429,
      {},
      R"({"error":true,"reason":")" + std::string(refused) + R"( API request limit reached; not asked"})"};
}

}  // namespace nimbara
