# Stowline for a firmware image, built by OpenEmbedded. It needs a release that has CMake 3.25 and a
# compiler for C++20; for older images build the module with the cross compiler and take scripts/package.
#
# Set these in the configuration of the layer or of the image:
#   STOWLINE_SRC_URI  where the sources come from, such as "git://...;branch=main"
#   STOWLINE_SRCREV   the commit to build
#   STOWLINE_PYTHON   the recipe of the GUI's interpreter, when it is not "python3"

SUMMARY = "Backup and restore of channel lists, configuration and plugins"
SECTION = "base"
LICENSE = "MIT"
LIC_FILES_CHKSUM = "file://LICENSE;md5=e33c7ab2bec762adf990057cc3e1387b"

PV = "0.1.0+git"
SRC_URI = "${STOWLINE_SRC_URI}"
SRCREV = "${STOWLINE_SRCREV}"
S = "${WORKDIR}/git"

STOWLINE_PYTHON ??= "python3"
DEPENDS = "${STOWLINE_PYTHON} gettext-native"
RDEPENDS:${PN} = "enigma2"

inherit cmake ${STOWLINE_PYTHON}-dir

# Where the interpreter's headers lie; some versions have a suffix after their number.
STOWLINE_PYTHON_HEADERS ??= "${STAGING_INCDIR}/${PYTHON_DIR}"
EXTRA_OECMAKE = "-DSTOWLINE_MODULE_ONLY=ON -DSTOWLINE_PYTHON_INCLUDE=${STOWLINE_PYTHON_HEADERS}"

do_install() {
    ${S}/scripts/stage ${B}/Stowline.so ${D} ${PYTHON_BASEVERSION}
}

FILES:${PN} = " \
    ${PYTHON_SITEPACKAGES_DIR}/Stowline.so \
    ${datadir}/enigma2/stowline \
    ${datadir}/licenses/stowline \
"
