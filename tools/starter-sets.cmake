# Writes the starter "sets.txt" of a new data folder: a 1024 x 768 window with sound
# and music on, and one person against three computer pilots on teams of their own,
# at the second-gentlest skill so that a first match is not lost in seconds.
# An existing file is the player's own and is never touched.
if(EXISTS "${OUT}")
  return()
endif()
set(cr "\r\n")
set(semi ";")
set(text "")
foreach(line
    "screenwidth=1024" "screenheight=768" "soundeffects=1" "musics=1" "fullscreen=0"
    "credits=200" "testopponent=1" "fps=100" "music volume=70" "sound volume=90"
    "players=4" "ai vs ai=1" "nick1=Player 1" "nick2=Player 2" "nick3=Player 3" "nick4=Player 4"
    "cammode=0" "detail=3" "mode256=0")
  string(APPEND text "${line}${semi}${cr}")
endforeach()
foreach(n RANGE 1 16)
  if(n EQUAL 1)
    string(APPEND text "player${n}ihmispelaaja=1${semi}${cr}")
  else()
    string(APPEND text "player${n}ihmispelaaja=0${semi}${cr}")
  endif()
endforeach()
foreach(n RANGE 1 16)
  string(APPEND text "player${n}team=${n}${semi}${cr}")
endforeach()
string(APPEND text "[]${cr}")
file(WRITE "${OUT}" "${text}")
