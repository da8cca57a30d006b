"""The channel lists of a receiver: services, bouquets and the tuner's own tables, as texts by path."""

import random
from typing import NamedTuple

BROADCASTERS = ("Larkspur", "Quillmere", "Fennick", "Brindle", "Thornby", "Tidewick", "Emberly", "Corvane", "Dunmarsh",
                "Pellworth", "Rookfield", "Sablewood", "Wexcombe", "Yarrowgate", "Kestrelby", "Ivelmont", "Orrinshaw",
                "Bramhollow")
PROGRAMMES = ("One", "News", "Sport", "Cinema", "Kids", "Nature", "Music", "Drama", "Life", "Docu", "Culture",
              "Regional", "Shop", "Comedy", "Series", "Travel")
RADIO_PROGRAMMES = ("Radio One", "Radio Classic", "Radio Talk", "Radio Jazz")


class Network(NamedTuple):
    """Where a group of transponders is received from."""
    kind: str  # as the service database marks it: s(atellite), t(errestrial), c(able)
    namespace: int
    id: int
    frequencies: range
    parameters: str  # what follows the frequency in the service database
    element: str  # its element in the tuner's table
    transponder: str  # the attributes of each transponder there


NETWORKS = (
    Network("s", 0x00C00000, 0x00E1, range(10714000, 11728000, 39000), "22000000:0:2:192:2:0:1:1:0:2",
            'sat name="Meridian (19.2E)" flags="0" position="192"',
            'symbol_rate="22000000" polarization="0" fec_inner="2" system="1" modulation="2"'),
    Network("s", 0x00820000, 0x00E2, range(11054000, 11642000, 42000), "27500000:1:3:130:2:0:0:0:0:2",
            'sat name="Solstice (13.0E)" flags="0" position="130"',
            'symbol_rate="27500000" polarization="1" fec_inner="3" system="0" modulation="1"'),
    Network("t", 0xEEEE0000, 0x20F1, range(474000000, 514000000, 8000000), "0:5:5:2:4:4:2:0:0",
            'terrestrial name="Harbour mast" flags="5" countrycode="XXA"',
            'bandwidth="0" constellation="3" system="1"'),
    Network("c", 0xFFFF0000, 0xF021, range(306000000, 362000000, 8000000), "6900000:2:5:0:0",
            'cable name="Town cable" flags="9" countrycode="XXA"',
            'symbol_rate="6900000" fec_inner="0" modulation="5"'),
)


class Transponder(NamedTuple):
    network: Network
    id: int
    frequency: int


class Service(NamedTuple):
    transponder: Transponder
    id: int
    kind: int  # television is 1, radio 2
    name: str
    provider: str


def all_transponders():
    numbers = random.Random(1)
    return [Transponder(network, numbers.randrange(1000, 61000), frequency)
            for network in NETWORKS for frequency in network.frequencies]


def all_services(transponders):
    """Every broadcaster's programmes, in three variants, spread over the transponders."""
    numbers = random.Random(2)
    names = [(1, programme + variant) for programme in PROGRAMMES for variant in ("", " HD", " West")]
    names += [(2, programme) for programme in RADIO_PROGRAMMES]
    return [Service(numbers.choice(transponders), numbers.randrange(1, 65001), kind, broadcaster + " " + name,
                    broadcaster)
            for broadcaster in BROADCASTERS for kind, name in names]


def service_database(transponders, services):
    lines = ["eDVB services /4/", "transponders"]
    for network, number, frequency in transponders:
        lines += ["%08x:%04x:%04x" % (network.namespace, number, network.id),
                  "\t%s %d:%s" % (network.kind, frequency, network.parameters), "/"]
    lines += ["end", "services"]
    for (network, number, _), service, kind, name, provider in services:
        lines += ["%04x:%08x:%04x:%04x:%d:0" % (service, network.namespace, number, network.id, kind), name,
                  "p:" + provider]
    return "\n".join(lines + ["end", ""])


def reference(service):
    network, number, _ = service.transponder
    return "1:0:%d:%X:%X:%X:%X:0:0:0:" % (service.kind, service.id, number, network.id, network.namespace)


def references(services):
    return "".join(reference(service) + "\n" for service in services)


def bouquet(title, services):
    return "#NAME %s\n" % title + "".join(
        "#SERVICE %s\n#DESCRIPTION %s\n" % (reference(service), service.name) for service in services)


def bouquets(kind, bouquet_of):
    """The bouquets, given by their names, and the list of them; `kind` is the ending of their files."""
    files = {"etc/enigma2/userbouquet.%s.%s" % (name, kind): text for name, text in bouquet_of.items()}
    title = {"tv": "TV", "radio": "Radio"}[kind]
    files["etc/enigma2/bouquets." + kind] = "#NAME Bouquets (%s)\n" % title + "".join(
        '#SERVICE 1:7:1:0:0:0:0:0:0:0:FROM BOUQUET "userbouquet.%s.%s" ORDER BY bouquet\n' % (name, kind)
        for name in bouquet_of)
    return files


def tuner_table(transponders, root, kind):
    """The tuner's own table of the networks of one kind."""
    lines = ['<?xml version="1.0" encoding="iso-8859-1"?>', "<%s>" % root]
    frequency_name = "centre_frequency" if kind == "t" else "frequency"
    for network in NETWORKS:
        if network.kind == kind:
            lines += ["\t<%s>" % network.element]
            lines += ['\t\t<transponder %s="%d" %s/>' % (frequency_name, transponder.frequency, network.transponder)
                      for transponder in transponders if transponder.network == network]
            lines += ["\t</%s>" % network.element.split()[0]]
    return "\n".join(lines + ["</%s>" % root, ""])


def channel_files(transponders, services, tv, radio, blacklist, whitelist):
    return {**bouquets("tv", tv), **bouquets("radio", radio),
            "etc/enigma2/lamedb": service_database(transponders, services),
            "etc/enigma2/blacklist": references(blacklist),
            "etc/enigma2/whitelist": references(whitelist),
            "etc/tuxbox/satellites.xml": tuner_table(transponders, "satellites", "s"),
            "etc/tuxbox/terrestrial.xml": tuner_table(transponders, "locations", "t"),
            "etc/tuxbox/cables.xml": tuner_table(transponders, "cables", "c")}


def factory():
    transponder = Transponder(NETWORKS[0], 1019, NETWORKS[0].frequencies[0])
    services = [Service(transponder, 28106, 1, "Larkspur One", "Larkspur"),
                Service(transponder, 28107, 1, "Quillmere One", "Quillmere")]
    return channel_files([transponder], services, {"favourites": bouquet("Favourites (TV)", [])},
                         {"favourites": bouquet("Favourites (Radio)", [])}, [], [])


def used():
    transponders = all_transponders()
    services = all_services(transponders)
    stations = [service for service in services if service.kind == 2]

    def every(number, of=services):
        return [service for service in of if service.id % number == 0]

    def named(word):
        return [service for service in services if word in service.name]

    television = {"favourites": bouquet("Favourites (TV)", [s for s in every(17) if s not in stations]),
                  "news": bouquet("News", named("News")),
                  "sport": bouquet("Sport", named("Sport")),
                  "cinema": bouquet("Films in the evening", named("Cinema")),
                  "kids": bouquet("For the children", named("Kids")),
                  "lastscanned": bouquet("Last Scanned", every(5))}
    radio = {"favourites": bouquet("Favourites (Radio)", every(3, stations)),
             "stations": bouquet("All stations", stations)}
    return channel_files(transponders, services, television, radio, every(53), every(59))
