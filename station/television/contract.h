/** The television's own object on its system bus. */
#pragma once

namespace station::television_contract {

inline constexpr auto bus_name = "org.velmora.Station.Television";
inline constexpr auto path = "/org/velmora/station/television";
inline constexpr auto interface = "org.velmora.Station.Television";

/*
 * Errors have the names org.velmora.Station.Error.NoSuchPart, .RunsAlready, .DidNotStart, .NoSuchProcess and
 * .BadCommand.
 *
 * Parts          Every part and the command ("application"): its name, its state ("runs", "ended with status
 * 1", "was killed by signal 9", "was not started") and its process number inside, 0 when it does not run.
 * Start          Starts a part that has ended, and waits until it is ready. NoSuchPart, RunsAlready,
 * DidNotStart. Kill           Kills (SIGKILL) every process of that name inside. NoSuchProcess. Run Runs a
 * command inside, with additional environment variables and three descriptors (standard input, output and
 * error), to its end; a caller that leaves the bus ends it. The answer is its status as a shell says it.
 * BadCommand. SetLanguage    Writes the language into the television's settings. Logs           The names of
 * the logs in /var/log/station, without ".log". End            Ends the television in order. PartEnded      A
 * part has ended by itself, and how.
 */
inline constexpr auto introspection = R"xml(<node>
  <interface name="org.velmora.Station.Television">
    <method name="Parts"><arg name="parts" type="a(ssi)" direction="out"/></method>
    <method name="Start"><arg name="part" type="s" direction="in"/></method>
    <method name="Kill"><arg name="program" type="s" direction="in"/></method>
    <method name="Run">
      <arg name="command" type="as" direction="in"/><arg name="environment" type="as" direction="in"/>
      <arg name="descriptors" type="ah" direction="in"/><arg name="status" type="i" direction="out"/>
    </method>
    <method name="SetLanguage"><arg name="language" type="s" direction="in"/></method>
    <method name="Logs"><arg name="names" type="as" direction="out"/></method>
    <method name="End"/>
    <signal name="PartEnded"><arg name="part" type="s"/><arg name="how" type="s"/></signal>
  </interface>
</node>)xml";

} // namespace station::television_contract
