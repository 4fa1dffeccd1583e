#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>

struct sd_bus_message;

namespace quillmeter {

// A D-Bus value of a basic type: integers of every width as one, texts and object paths as one.
using BusValue = std::variant<bool, std::int64_t, double, std::string>;
using BusProperties = std::map<std::string, BusValue, std::less<>>;

// Reads the dictionary of properties (a{sv}) that comes next in the message. False when something else comes, or not
// all of it can be read. Values of other types are left out.
bool readBusProperties(sd_bus_message* message, BusProperties& properties);

}  // namespace quillmeter
