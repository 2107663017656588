# krvcmd_content_hash(RESULT FILE): the SHA-256 of a file in Base64, as a content security policy names a style or a script.
function(krvcmd_content_hash result file)
  set(letters ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/)
  file(SHA256 "${file}" hex)
  # 32 bytes and one that fills up the last group of three.
  string(REGEX MATCHALL "......" groups "${hex}00")
  set(text "")
  foreach(group IN LISTS groups)
    foreach(shift 18 12 6 0)
      math(EXPR index "(0x${group} >> ${shift}) & 63")
      string(SUBSTRING "${letters}" ${index} 1 letter)
      string(APPEND text "${letter}")
    endforeach()
  endforeach()
  # "=" stands for the byte that was added.
  string(REGEX REPLACE ".$" "=" text "${text}")
  set(${result} "${text}" PARENT_SCOPE)
endfunction()
