/** The bus objects of the NCP host: the television's own, and the one that makes it go wrong. */
#pragma once

namespace simulator::contract {

inline constexpr auto bus_name = "org.orvane.qm_ncp_host";
inline constexpr auto service_path = "/org/orvane/qm_ncp_host";
inline constexpr auto service_interface = "org.orvane.qm_ncp_host.service";
inline constexpr auto event_signal = "ncp_event";
inline constexpr auto statistics_method = "ember_get_rx_statistics";
inline constexpr auto service_introspection = R"xml(<node>
  <interface name="org.orvane.qm_ncp_host.service">
    <annotation name="org.gtk.GDBus.DocString" value="Each result is what the radio module says: 0, or why it
      refuses; see the codes in simulator/README.md."/>
    <method name="ember_start">
      <annotation name="org.gtk.GDBus.DocString" value="Starts the TX test (0) or the RX test (1)."/>
      <arg name="test_mode" type="i" direction="in"/><arg name="result" type="i" direction="out"/>
    </method>
    <method name="ember_stop">
      <annotation name="org.gtk.GDBus.DocString" value="Ends the test, and a stream with it."/>
      <arg name="result" type="i" direction="out"/>
    </method>
    <method name="ember_set_channel">
      <annotation name="org.gtk.GDBus.DocString" value="Tunes the radio to a channel, 11 to 26."/>
      <arg name="channel" type="i" direction="in"/><arg name="result" type="i" direction="out"/>
    </method>
    <method name="ember_set_power">
      <annotation name="org.gtk.GDBus.DocString" value="Sets the power of the TX test, 0 to 20."/>
      <arg name="power" type="i" direction="in"/><arg name="result" type="i" direction="out"/>
    </method>
    <method name="ember_start_stream">
      <annotation name="org.gtk.GDBus.DocString" value="In the TX test: sends from now on."/>
      <arg name="result" type="i" direction="out"/>
    </method>
    <method name="ember_stop_stream">
      <annotation name="org.gtk.GDBus.DocString" value="Ends the sending."/>
      <arg name="result" type="i" direction="out"/>
    </method>
    <method name="ember_get_rx_statistics">
      <annotation name="org.gtk.GDBus.DocString" value="In the RX test: 'COUNT packets on channel N'."/>
      <arg name="statistics" type="s" direction="out"/><arg name="result" type="i" direction="out"/>
    </method>
    <method name="ember_reset_rx_statistics">
      <annotation name="org.gtk.GDBus.DocString" value="In the RX test: counts from 0 again."/>
      <arg name="result" type="i" direction="out"/>
    </method>
    <signal name="ncp_event">
      <annotation name="org.gtk.GDBus.DocString" value="'ready': the radio module answers over a new link."/>
      <arg name="text" type="s"/>
    </signal>
  </interface>
</node>)xml";

inline constexpr auto simulation_path = "/org/velmora/simulator/ncp_host";
inline constexpr auto simulation_interface = "org.velmora.Simulator.NcpHost";
/* Errors have the names org.velmora.Simulator.Error.NoSuchBehaviour and .NoSuchValue. */
inline constexpr auto simulation_introspection = R"xml(<node>
  <interface name="org.velmora.Simulator.NcpHost">
    <method name="SetBehaviour">
      <annotation name="org.gtk.GDBus.DocString" value="From now on a method of the NCP host answers like that:
        'normal', 'code N', 'error', 'late MS', 'never', 'dies' (the host ends), or 'reply (VALUES)' with values of
        any type. NoSuchBehaviour: there is no such method or behaviour."/>
      <arg name="method" type="s" direction="in"/><arg name="behaviour" type="s" direction="in"/>
    </method>
    <method name="Emit">
      <annotation name="org.gtk.GDBus.DocString" value="Says ncp_event with this text."/>
      <arg name="text" type="s" direction="in"/>
    </method>
    <method name="EmitValues">
      <annotation name="org.gtk.GDBus.DocString" value="Says ncp_event with values of any type, written as
        GVariant text: '(7, true)'. NoSuchValue."/>
      <arg name="values" type="s" direction="in"/>
    </method>
    <method name="Calls">
      <annotation name="org.gtk.GDBus.DocString" value="Every call of the NCP host's methods since it started,
        in order, for example 'ember_set_channel(15)'."/>
      <arg name="calls" type="as" direction="out"/>
    </method>
  </interface>
</node>)xml";

} // namespace simulator::contract
