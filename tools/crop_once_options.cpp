#include "tools/crop_once_options.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vantrel {
namespace {

[[noreturn]] void refuse(std::string_view option, std::string_view what) {
  throw WrongUsage(std::string(option) + " " + std::string(what));
}

/// A number that takes up all of `text`; absent for anything else.
template <class Number>
std::optional<Number> numberIn(std::string_view text) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || rest != end) return std::nullopt;
  return number;
}

std::optional<double> finiteNumberIn(std::string_view text) {
  const auto number = numberIn<double>(text);
  return number && std::isfinite(*number) ? number : std::nullopt;
}

int64_t wholeNumber(std::string_view option, std::string_view text) {
  const auto number = numberIn<int64_t>(text);
  if (!number) refuse(option, "takes a whole number");
  return *number;
}

double bitrate(std::string_view option, std::string_view text) {
  EncodingSettings settings;
  settings.megabitsPerSecond = finiteNumberIn(text).value_or(0);
  if (!settings.isValid()) refuse(option, "takes a number from 0.01 to 10000");
  return settings.megabitsPerSecond;
}

double quality(std::string_view option, std::string_view text) {
  const auto number = finiteNumberIn(text);
  if (!number) refuse(option, "takes a number from 0 to 1");
  return *number;
}

ImageBackground background(std::string_view option, std::string_view text) {
  std::vector<double> channels;
  for (;;) {
    const size_t comma = std::min(text.find(','), text.size());
    const double channel = finiteNumberIn(text.substr(0, comma)).value_or(-1);
    if (channel >= 0 && channel <= 1) channels.push_back(channel);
    if (comma == text.size()) break;
    text.remove_prefix(comma + 1);
  }
  if (channels.size() != 3) refuse(option, "takes three numbers from 0 to 1, as in 1,0.5,0");
  return {channels[0], channels[1], channels[2]};
}

/// The value that goes by `name` in a list of choices.
template <class Value>
Value choice(std::string_view option, std::string_view name,
             const std::map<std::string_view, Value>& choices) {
  const auto found = choices.find(name);
  if (found != choices.end()) return found->second;
  std::string list;
  for (const auto& [known, value] : choices)
    list += (list.empty() ? "" : " or ") + std::string(known);
  refuse(option, "takes " + list);
}

using Take = std::function<void(CropOnceOptions&, std::string_view option, std::string_view value)>;

/// The options with a value, and what each does with it.
const std::map<std::string_view, Take>& optionsWithValue() {
  using Codec = EncodingSettings::Codec;
  using Format = ImageEncodingSettings::Format;
  using View = std::string_view;
  static const std::map<View, Take> options{
      {"--left", [](auto& o, View name, View value) { o.left = wholeNumber(name, value); }},
      {"--top", [](auto& o, View name, View value) { o.top = wholeNumber(name, value); }},
      {"--right", [](auto& o, View name, View value) { o.right = wholeNumber(name, value); }},
      {"--bottom", [](auto& o, View name, View value) { o.bottom = wholeNumber(name, value); }},
      {"--codec",
       [](auto& o, View name, View value) {
         o.codec = choice<Codec>(name, value, {{"h264", Codec::h264}, {"hevc", Codec::hevc}});
       }},
      {"--mbps",
       [](auto& o, View name, View value) { o.megabitsPerSecond = bitrate(name, value); }},
      {"--format",
       [](auto& o, View name, View value) {
         o.format = choice<Format>(name, value, {{"jpeg", Format::jpeg}, {"png", Format::png}});
       }},
      {"--quality", [](auto& o, View name, View value) { o.quality = quality(name, value); }},
      {"--background",
       [](auto& o, View name, View value) { o.background = background(name, value); }},
  };
  return options;
}

}  // namespace

CropOnceOptions CropOnceOptions::parse(std::span<const char* const> arguments) {
  CropOnceOptions options;
  std::vector<std::string_view> files;
  std::map<std::string_view, bool> given;
  bool onlyFiles = false;
  for (size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    if (onlyFiles || !argument.starts_with('-')) {
      files.push_back(argument);
    } else if (argument == "--") {
      onlyFiles = true;
    } else if (std::exchange(given[argument], true)) {
      refuse(argument, "is given twice");
    } else if (argument == "--progress") {
      options.progress = true;
    } else {
      const auto known = optionsWithValue().find(argument);
      if (known == optionsWithValue().end()) refuse(argument, "is not an option");
      if (++i == arguments.size()) refuse(argument, "takes a value");
      known->second(options, argument, arguments[i]);
    }
  }
  if (files.size() != 2 || files[0].empty() || files[1].empty()) {
    throw WrongUsage("A source and a destination are needed");
  }
  options.source = files[0];
  options.destination = files[1];
  return options;
}

std::optional<QRectF> CropOnceOptions::crop(const QSizeF& size, int64_t multiple) const {
  CropMargins margins = CropMargins::fullImage(size, multiple);
  if (left || right) {
    margins.left = left.value_or(0);
    margins.right = right.value_or(0);
  }
  if (top || bottom) {
    margins.top = top.value_or(0);
    margins.bottom = bottom.value_or(0);
  }
  const auto fits = [](int64_t before, int64_t after, double extent) {
    const auto pixels = static_cast<int64_t>(extent);
    return before >= 0 && after >= 0 && before < pixels && after < pixels - before;
  };
  if (!fits(margins.left, margins.right, size.width()) ||
      !fits(margins.top, margins.bottom, size.height())) {
    return std::nullopt;
  }
  return margins.rectangle(size);
}

const char* CropOnceOptions::usage() {
  return "usage: crop-once SOURCE DESTINATION [--left N] [--top N] [--right N] [--bottom N]\n"
         "                 [--codec h264|hevc] [--mbps X]                          (videos)\n"
         "                 [--format png|jpeg] [--quality Q] [--background R,G,B]  (images)\n"
         "                 [--progress]                                            (videos)\n"
         "Margins are pixels, quality and background channels numbers from 0 to 1. --progress\n"
         "prints lines \"progress FRACTION\" and \"bytes SIZE\" on standard error.\n";
}

}  // namespace vantrel
