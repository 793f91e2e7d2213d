/** The bus objects of the NCP host: the television's own, and the one that makes it go wrong. */
#pragma once

namespace station::contract {

inline constexpr auto service_path = "/org/orvane/qm_ncp_host";
inline constexpr auto service_interface = "org.orvane.qm_ncp_host.service";
inline constexpr auto event_signal = "ncp_event";
inline constexpr auto statistics_method = "ember_get_rx_statistics";
inline constexpr auto service_introspection = R"(<node>
  <interface name="org.orvane.qm_ncp_host.service">
    <method name="ember_start">
      <arg name="test_mode" type="i" direction="in"/><arg name="result" type="i" direction="out"/>
    </method>
    <method name="ember_stop"><arg name="result" type="i" direction="out"/></method>
    <method name="ember_set_channel">
      <arg name="channel" type="i" direction="in"/><arg name="result" type="i" direction="out"/>
    </method>
    <method name="ember_set_power">
      <arg name="power" type="i" direction="in"/><arg name="result" type="i" direction="out"/>
    </method>
    <method name="ember_start_stream"><arg name="result" type="i" direction="out"/></method>
    <method name="ember_stop_stream"><arg name="result" type="i" direction="out"/></method>
    <method name="ember_get_rx_statistics">
      <arg name="statistics" type="s" direction="out"/><arg name="result" type="i" direction="out"/>
    </method>
    <method name="ember_reset_rx_statistics"><arg name="result" type="i" direction="out"/></method>
    <signal name="ncp_event"><arg name="text" type="s"/></signal>
  </interface>
</node>)";

inline constexpr auto simulation_path = "/org/velmora/station/ncp_host";
inline constexpr auto simulation_introspection = R"(<node>
  <interface name="org.velmora.Station.NcpHost">
    <method name="Answer">
      <arg name="method" type="s" direction="in"/><arg name="behaviour" type="s" direction="in"/>
    </method>
    <method name="Emit"><arg name="text" type="s" direction="in"/></method>
    <method name="EmitWrong"/>
    <method name="Asked"><arg name="calls" type="as" direction="out"/></method>
  </interface>
</node>)";

} // namespace station::contract
