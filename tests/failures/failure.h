/** What can fail while the radio is brought up, and what then is to be seen from outside. */
#pragma once

#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

/** What the operator gets after the start button. */
enum class Outcome {
    test_page,
    start_failed, /**< the button reads "Failed to start child process" and can be pressed again */
    waiting,      /**< the button reads "Please Wait...", and nothing comes */
    end,          /**< the application ends by itself */
};

/** Stands for the content of a file that has bytes of its own each time. */
constexpr auto any_content = "any content";

/** A file when all is over. */
struct FileState {
    std::optional<std::string> content = {}; /**< nothing: there is no such file */
    bool is_given_away = false;              /**< it belongs to user 5001 and group 100 */
    std::optional<std::string> label = {};   /**< nothing: whatever it is */
    std::optional<mode_t> mode = {};         /**< nothing: whatever the file mode mask leaves of 0666 */
};

/** One failure: a television in which it happens, and all that is to be compared. */
struct Failure {
    std::string name = {};
    std::string television = {}; /**< options of simulator/tv */
    Outcome outcome = Outcome::test_page;
    std::string running = "cpcd socat zigbeed";  /**< the radio stack's processes then */
    std::vector<std::string> messages = {};      /**< on the log, in this order, among others */
    std::map<std::string, long> counts = {};     /**< how many log messages have a text */
    std::map<std::string, FileState> files = {}; /**< the report's files are as before unless named here */
    bool starts_again = false;                   /**< a second start has the same outcome */
    std::string survivors = {};                  /**< what outlives the application */
    int device_after_waits = 0; /**< when the serial device appears; 0: not during the test */
    bool is_rx_test = false;    /**< the RX test is started, else the TX test */
};

/** The files of the failure report. */
inline const std::string result_folder = "/opt/data/BM/EW/result";
inline const std::string result_file = result_folder + "/iot_test_bin_result";
inline const std::string test_file = "/tmp/iot_test_result";
inline const std::string factory_file = "/tmp/iot_factory_data";

/** All of them. */
std::vector<Failure> failures();
