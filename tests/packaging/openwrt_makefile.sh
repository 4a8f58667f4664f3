#!/bin/sh
# The OpenWrt Makefile over a stand-in for the build system's own files: every package installs from
# what `cmake --install` gives, and each file it names is there.
. "$(dirname "$0")/check.sh"
command -v make >/dev/null || skip "no make"

install_folder=$work/pkg-install
DESTDIR=$install_folder cmake --install "$build_folder" --prefix /usr >/dev/null || fail "cmake --install"
[ -e "$install_folder/usr/lib/libkobd_client.so" ] || skip "this build has no shared libraries in usr/lib"

mkdir -p "$work/include"
cat >"$work/rules.mk" <<END
INCLUDE_DIR:=$work/include
BUILD_DIR:=$work/build
PKG_INSTALL_DIR:=$install_folder
qstrip=\$(strip \$(subst ",,\$(1)))
INSTALL_DIR:=install -d -m0755
INSTALL_BIN:=install -m0755
INSTALL_DATA:=install -m0644
CP:=cp -fpR
END
# What the build system's BuildPackage does with a package, as far as files are concerned.
cat >"$work/include/package.mk" <<'END'
define BuildPackage
$(if $(Package/$(1)/install),,$(error $(1) has no install))
install-$(1):
	$(call Package/$(1)/install,$(OUT)/$(1))
endef
version:
	@echo $(PKG_VERSION)
prepare:
	$(call Build/Prepare)
install-dev:
	$(call Build/InstallDev,$(OUT)/dev)
define newline


endef
told:
	@printf '%b\\n' '$(strip $(CMAKE_OPTIONS))|$(Package/kobd/conffiles)'
	@printf '%b\\n' '$(foreach package,kobd kobd-host kobctl libkobd-client,$(subst $(newline),\n,$(Package/$(package)))\n)'
END
echo 'CMAKE_OPTIONS:=of-cmake.mk' >"$work/include/cmake.mk"

# The build system works in no folder with a blank in its name; the clone may be in one.
mkdir "$work/clone"
tar -C "$source_folder" --exclude=./build --exclude=./.git --exclude=./.cache -cf - . | tar -C "$work/clone" -xf -
run_make() { make -s -C "$work/clone/packaging/openwrt/kobd" TOPDIR="$work" OUT="$work/out" "$@" 2>&1; }

expect "make says nothing" "" \
    "$(run_make install-kobd install-kobd-host install-kobctl install-libkobd-client install-dev prepare)"
expect "files" "dev/usr/include/kobd_client.h
dev/usr/lib/cmake/kobd_client/kobd_client-config-version.cmake
dev/usr/lib/cmake/kobd_client/kobd_client-config.cmake
dev/usr/lib/libkobd_bus.so
dev/usr/lib/libkobd_bus.so.0
dev/usr/lib/libkobd_client.so
dev/usr/lib/libkobd_client.so.0
dev/usr/lib/pkgconfig/kobd_client.pc
kobctl/etc/init.d/kobd-events
kobctl/usr/bin/kobctl
kobctl/usr/libexec/kobd-events
kobctl/usr/libexec/rpcd/kobd
kobctl/usr/share/rpcd/acl.d/kobd.json
kobd-host/usr/lib/libkobd_host.so
kobd-host/usr/share/kobd/scenarios/apn-drop
kobd-host/usr/share/kobd/scenarios/bad-day
kobd-host/usr/share/kobd/scenarios/devices-come-and-go
kobd-host/usr/share/kobd/scenarios/signal-fade
kobd-host/usr/share/kobd/scenarios/sim-out
kobd-host/usr/share/kobd/scenarios/slow-platform
kobd-host/usr/share/kobd/scenarios/table-full
kobd-host/usr/share/kobd/scenarios/wan-flapping
kobd/etc/init.d/kobd
kobd/usr/sbin/kobd
libkobd-client/usr/lib/libkobd_bus.so.0
libkobd-client/usr/lib/libkobd_client.so.0" \
    "$(cd "$work/out" && find . ! -type d ! -name '*.so.0.*' ! -name '*-config-[a-u]*' | LC_ALL=C sort | sed 's|^\./||')"
expect "version, as the project's" \
    "$(sed -n 's/^project(kobd VERSION \([0-9.]*\).*/\1/p' "$source_folder/CMakeLists.txt")" "$(run_make version)"
# built LIBRARIES HOST WANTED: what the build is told about the platform
built() {
    told=$(run_make CONFIG_KOBD_PLATFORM_LIBRARIES="\"$1\"" CONFIG_KOBD_HOST_PLATFORM="$2" told)
    expect "how it is built with '$1' '$2', and what an upgrade of the package keeps" \
        "of-cmake.mk -DKOBD_TESTS=OFF -DKOBD_PLATFORM_LIBRARIES=\"$3\"|/etc/kobd/" "$(echo "$told" | head -n 1)"
}
built "" y ""
built "message;nvram" "" "message;nvram"
built "message;nvram" y "message;nvram;kobd_host;kobd_bus"
expect "what the packages need" "+libkobd-client +libpthread +libstdcpp +KOBD_HOST_PLATFORM:kobd-host +KOBD_OWN_PLATFORM:kobd-platform
+libkobd-client +libpthread +libsqlite3 +libstdcpp
+kobd +libkobd-client +libstdcpp
+libpthread +libstdcpp" "$(echo "$told" | sed -n 's/^ *DEPENDS:=//p')"
# What is built is the clone, without what was built in it before.
expect "what is built" "CMakeLists.txt
daemon" "$(cd "$work"/build/kobd-* && ls -d build .git CMakeLists.txt daemon 2>/dev/null)"
cmp -s "$work/out/kobd/etc/init.d/kobd" "$source_folder/packaging/openwrt/kobd/files/kobd.init" ||
    fail "another init script was installed"
[ -x "$work/out/kobd/etc/init.d/kobd" ] || fail "the init script cannot be run"
# A library that a program loads and no package brings would be missed on the router alone.
for program in kobd/usr/sbin/kobd kobctl/usr/bin/kobctl; do
    for library in $(readelf -d "$work/out/$program" | sed -n 's/.*NEEDED.*\[\(libkobd[^]]*\)\]/\1/p'); do
        ls "$work"/out/[kl]*/usr/lib/"$library" >/dev/null || fail "$program loads $library, which no package has"
    done
done
finish
