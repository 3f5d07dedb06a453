#include <profile/ProfileKeys.h>
#include <profile/ProfileValues.h>

namespace kxsim {
namespace {

// The field of a profile that a path of members leads to.
template <auto... path, typename AnyProfile>
auto& Field(AnyProfile& profile) {
  return (profile.*....*path);
}

template <typename Value>
Value Empty(const Value&) {
  return {};
}

template <typename Value>
Value Empty(const std::optional<Value>&) {
  return {};
}

// A key whose value is read by one of the readers into one field, and written from there.
template <auto reader, auto... path>
constexpr ProfileKey Row(std::string_view section, std::string_view name,
                         std::string_view expected) {
  return {section, name, expected,
          [](const TomlNode& node, Profile& profile) {
            auto value = Empty(Field<path...>(profile));
            if (!reader(node, value)) return false;
            Field<path...>(profile) = std::move(value);
            return true;
          },
          [](const Profile& profile) { return Written(Field<path...>(profile)); }};
}

using P = Profile;
using L = LineSettings;
using I = Identity;
using S = SimSettings;
using R = RadioSettings;
using D = PacketSettings;
using E = Expectation;

constexpr std::string_view kText = "a text";
constexpr std::string_view kFlag = "true or false";
constexpr std::string_view kSpeed = "a line speed such as 19200 or 115200";
constexpr std::string_view kMilliseconds = "milliseconds from 0 to 600000";
constexpr std::string_view kDigits = "a text of four digits or more";
constexpr std::string_view kWhole = "a whole number";
constexpr int kBig = 2'000'000'000;

constexpr ProfileKey kKeys[] = {
    Row<ReadText, &P::description>("", "description", kText),
    Row<ReadFlag, &P::scripted>("", "scripted", kFlag),
    Row<ReadFamilies, &P::families>("", "families",
                                    "a list of \"gsm\", \"gprs\", \"cdma\" and \"qualcomm\""),

    Row<ReadSpeed, &P::line, &L::baud>("line", "baud", kSpeed),
    Row<ReadSpeeds, &P::line, &L::speeds>("line", "speeds", "a list of line speeds"),
    Row<ReadFlag, &P::line, &L::autobaud>("line", "autobaud", kFlag),
    Row<ReadFlag, &P::line, &L::moves>("line", "moves", kFlag),
    Row<ReadFlag, &P::line, &L::echo>("line", "echo", kFlag),
    Row<ReadNumber<0, 600'000>, &P::line, &L::latencyMs>("line", "latency", kMilliseconds),
    Row<ReadText, &P::line, &L::lineEnd>("line", "line_end", kText),
    Row<ReadFlag, &P::line, &L::nulBytes>("line", "nul_bytes", kFlag),

    Row<ReadText, &P::identity, &I::manufacturer>("identity", "manufacturer", kText),
    Row<ReadText, &P::identity, &I::model>("identity", "model", kText),
    Row<ReadText, &P::identity, &I::revision>("identity", "revision", kText),
    Row<ReadText, &P::identity, &I::serial>("identity", "serial", kText),
    Row<ReadText, &P::identity, &I::capabilities>("identity", "capabilities", kText),
    Row<ReadText, &P::identity, &I::imsi>("identity", "imsi", kText),
    Row<ReadText, &P::identity, &I::number>("identity", "number", kText),
    Row<ReadFlag, &P::identity, &I::prefix>("identity", "prefix", kFlag),
    Row<ReadFlag, &P::identity, &I::quotes>("identity", "quotes", kFlag),
    Row<ReadNumbered<0, 9>, &P::identity, &I::pages>("identity", "pages",
                                                     "a table of texts with the keys 0 to 9"),

    Row<ReadSimState, &P::sim, &S::state>("sim", "state",
                                          "\"none\", \"ready\", \"pin\", \"puk\" or \"failure\""),
    Row<ReadCode, &P::sim, &S::pin>("sim", "pin", kDigits),
    Row<ReadCode, &P::sim, &S::puk>("sim", "puk", kDigits),
    Row<ReadNumber<1, 99>, &P::sim, &S::pinTries>("sim", "pin_tries", "1 to 99"),
    Row<ReadNumber<1, 99>, &P::sim, &S::pukTries>("sim", "puk_tries", "1 to 99"),
    Row<ReadFlag, &P::sim, &S::lock>("sim", "lock", kFlag),
    Row<ReadFlag, &P::sim, &S::stateAsError>("sim", "state_as_error", kFlag),
    Row<ReadNumber<4, 99>, &P::sim, &S::pinLength>("sim", "pin_length", "4 to 99"),

    Row<ReadFlag, &P::radio, &R::on>("radio", "on", kFlag),
    Row<ReadNumber<0, 5>, &P::radio, &R::registration>("radio", "registration", "0 to 5"),
    Row<ReadText, &P::radio, &R::operatorName>("radio", "operator", kText),
    Row<ReadCode, &P::radio, &R::operatorCode>("radio", "operator_code", kDigits),
    Row<ReadText, &P::radio, &R::area>("radio", "area", kText),
    Row<ReadText, &P::radio, &R::cell>("radio", "cell", kText),
    Row<ReadSteps<0, 99>, &P::radio, &R::signal>("radio", "signal",
                                                 "0 to 99, or a list of [second, level]"),
    Row<ReadSteps<0, 100>, &P::radio, &R::battery>("radio", "battery",
                                                   "0 to 100, or a list of [second, level]"),
    Row<ReadNumber<0, 3>, &P::radio, &R::batteryStatus>("radio", "battery_status", "0 to 3"),
    Row<ReadNumber<0, 9>, &P::radio, &R::service>("radio", "service", "0 to 9"),

    Row<ReadFlag, &P::packet, &D::attached>("packet", "attached", kFlag),
    Row<ReadFlag, &P::packet, &D::refuseAttach>("packet", "refuse_attach", kFlag),
    Row<ReadNumber<0, 600>, &P::packet, &D::attachSeconds>("packet", "attach_seconds", "0 to 600"),
    Row<ReadNumbered<1, 16>, &P::packet, &D::contexts>(
        "packet", "contexts", "a table of access points with the keys 1 to 16"),
    Row<ReadTexts, &P::packet, &D::qos>("packet", "qos", "a list of commands such as \"+CGQMIN\""),

    Row<ReadSpeed, &P::expect, &E::openBaud>("expect", "open_baud", kSpeed),
    Row<ReadTexts, &P::expect, &E::open>("expect", "open", "a list of commands"),
    Row<ReadFlag, &P::expect, &E::opens>("expect", "opens", kFlag),
    Row<ReadText, &P::expect, &E::platform>("expect", "platform", kText),
    Row<ReadSpeed, &P::expect, &E::baud>("expect", "baud", kSpeed),
    Row<ReadSpeed, &P::expect, &E::fastBaud>("expect", "fast_baud", kSpeed),
    Row<ReadText, &P::expect, &E::manufacturer>("expect", "manufacturer", kText),
    Row<ReadText, &P::expect, &E::model>("expect", "model", kText),
    Row<ReadText, &P::expect, &E::capabilities>("expect", "capabilities", kText),
    Row<ReadText, &P::expect, &E::coverage>("expect", "coverage", kText),
    Row<ReadText, &P::expect, &E::version>("expect", "version", kText),
    Row<ReadNumber<-kBig, kBig>, &P::expect, &E::signal>("expect", "signal", kWhole),
    Row<ReadNumber<-kBig, kBig>, &P::expect, &E::battery>("expect", "battery", kWhole),
    Row<ReadText, &P::expect, &E::dial>("expect", "dial", kText),
    Row<ReadText, &P::expect, &E::propertiesType>("expect", "properties_type", kText),
    Row<ReadTexts, &P::expect, &E::prepare>("expect", "prepare", "a list of commands"),
    Row<ReadNumber<0, kBig>, &P::expect, &E::lastError>("expect", "last_error", kWhole),
    Row<ReadNumber<0, kBig>, &P::expect, &E::sim>("expect", "sim", kWhole),
    Row<ReadNumber<0, 99>, &P::expect, &E::pinLength>("expect", "pin_length", kWhole),
};

}  // namespace

std::span<const ProfileKey> ProfileKeys() { return kKeys; }

}  // namespace kxsim
