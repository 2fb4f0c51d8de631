# Finds the interface SDK of VST 3, as Debian's juce-modules-source-data carries it: a folder of
# sources and headers. Sets Vst3Sdk_FOUND and VST3_SDK_DIR; set the latter for a copy elsewhere.
# Nothing beside that one folder of the package is looked at.
set(_vst3_juce /usr/share/juce/modules)
find_path(VST3_SDK_DIR pluginterfaces/vst/ivstaudioprocessor.h
  PATHS
    ${_vst3_juce}/juce_audio_processors/format_types/VST3_SDK
    ${_vst3_juce}/juce_audio_processors_headless/format_types/VST3_SDK
  NO_DEFAULT_PATH
  DOC "Folder of the VST 3 interface SDK (base, pluginterfaces and public.sdk are in it)")

# A folder that was named but is none.
if(VST3_SDK_DIR AND NOT EXISTS "${VST3_SDK_DIR}/public.sdk/source/vst/vsteditcontroller.cpp")
  message(WARNING "VST3_SDK_DIR is ${VST3_SDK_DIR}, but no VST 3 interface SDK is there.")
  set(_vst3_complete FALSE)
else()
  set(_vst3_complete TRUE)
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(Vst3Sdk REQUIRED_VARS VST3_SDK_DIR _vst3_complete)
mark_as_advanced(VST3_SDK_DIR)
