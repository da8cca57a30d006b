#include "desk/tree/ChannelData.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <iterator>
#include <random>

namespace desk {
namespace {

constexpr const char* kBroadcasters[] = {
    "Larkspur", "Quillmere",  "Fennick",   "Brindle",   "Thornby",   "Tidewick",
    "Emberly",  "Corvane",    "Dunmarsh",  "Pellworth", "Rookfield", "Sablewood",
    "Wexcombe", "Yarrowgate", "Kestrelby", "Ivelmont",  "Orrinshaw", "Bramhollow"};

constexpr const char* kProgrammes[] = {"One",   "News",   "Sport",  "Cinema", "Kids",    "Nature",
                                       "Music", "Drama",  "Life",   "Docu",   "Culture", "Regional",
                                       "Shop",  "Comedy", "Series", "Travel"};

constexpr const char* kRadioProgrammes[] = {"Radio One", "Radio Classic", "Radio Talk",
                                            "Radio Jazz"};

/// Where a group of transponders is received from.
struct Network {
  char kind;  // as the service database marks it: s(atellite), t(errestrial), c(able)
  unsigned name_space;
  unsigned id;
  unsigned first_frequency;
  unsigned step;
  unsigned transponders;
  const char* parameters;  // what follows the frequency in the service database
  const char* element;     // its element in the tuner's table, with name and attributes
  const char* name;
  const char* attributes;
  const char* transponder_attributes;
};

constexpr Network kNetworks[] = {
    {'s', 0x00c00000, 0x00e1, 10714000, 39000, 26, "22000000:0:2:192:2:0:1:1:0:2",  //
     "sat", "Meridian (19.2E)", R"(flags="0" position="192")",
     R"(symbol_rate="22000000" polarization="0" fec_inner="2" system="1" modulation="2")"},
    {'s', 0x00820000, 0x00e2, 11054000, 42000, 14, "27500000:1:3:130:2:0:0:0:0:2",  //
     "sat", "Solstice (13.0E)", R"(flags="0" position="130")",
     R"(symbol_rate="27500000" polarization="1" fec_inner="3" system="0" modulation="1")"},
    {'t', 0xeeee0000, 0x20f1, 474000000, 8000000, 5, "0:5:5:2:4:4:2:0:0",  //
     "terrestrial", "Harbour mast", R"(flags="5" countrycode="XXA")",
     R"(bandwidth="0" constellation="3" system="1")"},
    {'c', 0xffff0000, 0xf021, 306000000, 8000000, 7, "6900000:2:5:0:0",  //
     "cable", "Town cable", R"(flags="9" countrycode="XXA")",
     R"(symbol_rate="6900000" fec_inner="0" modulation="5")"},
};

struct Transponder {
  const Network* network;
  unsigned id;
  unsigned frequency;
};

struct Service {
  const Transponder* transponder;
  unsigned id;
  bool radio;
  std::string name;
  std::string provider;
};

using Transponders = std::vector<Transponder>;
using Services = std::vector<Service>;
using Filter = std::function<bool(const Service&)>;

/// Returns what printf would print, at most 255 bytes of it.
template <typename... Values>
std::string format(const char* pattern, Values... values) {
  char text[256];
  (void)std::snprintf(text, sizeof text, pattern, values...);
  return text;
}

/// Gives the same numbers every time.
std::mt19937 repeatable(unsigned seed) {
  return std::mt19937(seed);
}

Transponders allTransponders() {
  Transponders transponders;
  std::mt19937 random = repeatable(1);
  for (const Network& network : kNetworks)
    for (unsigned i = 0; i < network.transponders; ++i)
      transponders.push_back({&network, 1000 + static_cast<unsigned>(random() % 60000),
                              network.first_frequency + i * network.step});
  return transponders;
}

/// Every broadcaster's programmes, in three variants, spread over the transponders.
Services allServices(const Transponders& transponders) {
  Services services;
  std::mt19937 random = repeatable(2);
  const auto add = [&](const std::string& name, const char* provider, bool radio) {
    services.push_back({&transponders[random() % transponders.size()],
                        1 + static_cast<unsigned>(random() % 65000), radio, name, provider});
  };
  for (const char* broadcaster : kBroadcasters) {
    const std::string prefix = std::string(broadcaster) + " ";
    for (const char* programme : kProgrammes)
      for (const char* variant : {"", " HD", " West"})
        add(prefix + programme + variant, broadcaster, false);
    for (const char* programme : kRadioProgrammes) add(prefix + programme, broadcaster, true);
  }
  return services;
}

std::string serviceDatabase(const Transponders& transponders, const Services& services) {
  std::string text = "eDVB services /4/\ntransponders\n";
  for (const Transponder& t : transponders)
    text += format("%08x:%04x:%04x\n\t%c %u:%s\n/\n", t.network->name_space, t.id, t.network->id,
                   t.network->kind, t.frequency, t.network->parameters);
  text += "end\nservices\n";
  for (const Service& s : services)
    text += format("%04x:%08x:%04x:%04x:%d:0\n%s\np:%s\n", s.id, s.transponder->network->name_space,
                   s.transponder->id, s.transponder->network->id, s.radio ? 2 : 1, s.name.c_str(),
                   s.provider.c_str());
  return text + "end\n";
}

std::string reference(const Service& s) {
  return format("1:0:%d:%X:%X:%X:%X:0:0:0:", s.radio ? 2 : 1, s.id, s.transponder->id,
                s.transponder->network->id, s.transponder->network->name_space);
}

std::string bouquet(const std::string& title, const Services& services, const Filter& filter) {
  std::string text = "#NAME " + title + "\n";
  for (const Service& s : services)
    if (filter(s)) text += "#SERVICE " + reference(s) + "\n#DESCRIPTION " + s.name + "\n";
  return text;
}

std::string bouquetList(const std::string& title, const std::vector<std::string>& files) {
  std::string text = "#NAME " + title + "\n";
  for (const std::string& file : files)
    text += "#SERVICE 1:7:1:0:0:0:0:0:0:0:FROM BOUQUET \"" + file + "\" ORDER BY bouquet\n";
  return text;
}

std::string references(const Services& services, const Filter& filter) {
  std::string text;
  for (const Service& s : services)
    if (filter(s)) text += reference(s) + "\n";
  return text;
}

/// The tuner's own table of the networks of one kind.
std::string tunerTable(const Transponders& transponders, const char* root, char kind) {
  std::string text = format("<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n<%s>\n", root);
  for (const Network& network : kNetworks) {
    if (network.kind != kind) continue;
    text += format("\t<%s name=\"%s\" %s>\n", network.element, network.name, network.attributes);
    for (const Transponder& t : transponders)
      if (t.network == &network)
        text += format("\t\t<transponder %s=\"%u\" %s/>\n",
                       kind == 't' ? "centre_frequency" : "frequency", t.frequency,
                       network.transponder_attributes);
    text += format("\t</%s>\n", network.element);
  }
  return text + format("</%s>\n", root);
}

Files tunerTables(const Transponders& transponders) {
  return {{"etc/tuxbox/satellites.xml", tunerTable(transponders, "satellites", 's')},
          {"etc/tuxbox/terrestrial.xml", tunerTable(transponders, "locations", 't')},
          {"etc/tuxbox/cables.xml", tunerTable(transponders, "cables", 'c')}};
}

/// A bouquet of every service whose name contains `word`.
File genre(const std::string& file, const std::string& title, const Services& services,
           const std::string& word) {
  const auto matches = [&](const Service& s) { return s.name.find(word) != std::string::npos; };
  return {"etc/enigma2/" + file, bouquet(title, services, matches)};
}

bool everyFifth(const Service& s) {
  return s.id % 5 == 0;
}
bool favouriteTv(const Service& s) {
  return !s.radio && s.id % 17 == 0;
}
bool favouriteRadio(const Service& s) {
  return s.radio && s.id % 3 == 0;
}
bool everyRadio(const Service& s) {
  return s.radio;
}
bool locked(const Service& s) {
  return s.id % 53 == 0;
}
bool unlocked(const Service& s) {
  return s.id % 59 == 0;
}
bool none(const Service& /*any*/) {
  return false;
}

}  // namespace

Files usedChannelData() {
  const Transponders transponders = allTransponders();
  const Services services = allServices(transponders);
  Files files = {
      {"etc/enigma2/lamedb", serviceDatabase(transponders, services)},
      {"etc/enigma2/bouquets.tv",
       bouquetList("Bouquets (TV)",
                   {"userbouquet.favourites.tv", "userbouquet.news.tv", "userbouquet.sport.tv",
                    "userbouquet.cinema.tv", "userbouquet.kids.tv", "userbouquet.lastscanned.tv"})},
      {"etc/enigma2/bouquets.radio",
       bouquetList("Bouquets (Radio)",
                   {"userbouquet.favourites.radio", "userbouquet.stations.radio"})},
      {"etc/enigma2/userbouquet.favourites.tv", bouquet("Favourites (TV)", services, favouriteTv)},
      genre("userbouquet.news.tv", "News", services, "News"),
      genre("userbouquet.sport.tv", "Sport", services, "Sport"),
      genre("userbouquet.cinema.tv", "Films in the evening", services, "Cinema"),
      genre("userbouquet.kids.tv", "For the children", services, "Kids"),
      {"etc/enigma2/userbouquet.lastscanned.tv", bouquet("Last Scanned", services, everyFifth)},
      {"etc/enigma2/userbouquet.favourites.radio",
       bouquet("Favourites (Radio)", services, favouriteRadio)},
      {"etc/enigma2/userbouquet.stations.radio", bouquet("All stations", services, everyRadio)},
      {"etc/enigma2/blacklist", references(services, locked)},
      {"etc/enigma2/whitelist", references(services, unlocked)},
  };
  std::ranges::move(tunerTables(transponders), std::back_inserter(files));
  return files;
}

Files factoryChannelData() {
  const Transponders transponders = {{std::begin(kNetworks), 1019, kNetworks->first_frequency}};
  const Services services = {{transponders.data(), 28106, false, "Larkspur One", "Larkspur"},
                             {transponders.data(), 28107, false, "Quillmere One", "Quillmere"}};
  Files files = {
      {"etc/enigma2/lamedb", serviceDatabase(transponders, services)},
      {"etc/enigma2/bouquets.tv", bouquetList("Bouquets (TV)", {"userbouquet.favourites.tv"})},
      {"etc/enigma2/bouquets.radio",
       bouquetList("Bouquets (Radio)", {"userbouquet.favourites.radio"})},
      {"etc/enigma2/userbouquet.favourites.tv", bouquet("Favourites (TV)", services, none)},
      {"etc/enigma2/userbouquet.favourites.radio", bouquet("Favourites (Radio)", services, none)},
      {"etc/enigma2/blacklist", ""},
      {"etc/enigma2/whitelist", ""},
  };
  std::ranges::move(tunerTables(transponders), std::back_inserter(files));
  return files;
}

}  // namespace desk
