# Fails unless README.md quotes each of FILES whole, so the README's examples are the ones built
# and tested. -DREADME=... -DFILES=a;b
file(READ "${README}" readme)
foreach(f IN LISTS FILES)
  file(READ "${f}" text)
  string(FIND "${readme}" "${text}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "README.md does not quote ${f} as it stands; copy the file into the README")
  endif()
endforeach()
