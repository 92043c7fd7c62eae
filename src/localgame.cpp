// The local game: its menu over the frozen field, the set-up behind each start
// item and the paced game loop with its end rule and victory screen.
#include "localgame.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "Menu.h"
#include "Sets.h"
#include "Teksti.h"
#include "audio.h"
#include "ctf.h"
#include "glapi.h"
#include "peliloppu.h"
#include "scene.h"

void (*pelinPiirto)(int frame) = drawFrame;
void (*voitonPiirto)(int tiimi) = drawVictory;

namespace {

const char* const kohtienTekstit[paikallisiaKohtia] = {"Start With Random Ships",
                                                       "Resume Game",
                                                       "Start With",
                                                       "Start With Credits & Random Ships",
                                                       "Flower Domination",
                                                       "Capture The Flower",
                                                       "Eat The Mushroom",
                                                       "Settings",
                                                       "Exit Menu"};

const float tekstiX = -25, tekstiZ = -40;
const float krediittiLukuX = -12, krediittiTekstiX = -5;
const float otsikkoY = 8.5f, otsikkoKoko = 1.4f;
// The longest item ends about here; the layout is fitted between these edges.
const float valikonOikeaReuna = 16;

// Until a match has run there is no field to show behind the menu.
bool kenttaPelattu = false;

// Catch-up policies: credit games drop a long backlog, objective games keep one
// frame of it, the random-ship game always computes every frame.
const Pelisilmukka vapaaSilmukka = {CatchUp::Unlimited, 0, nullptr};
const Pelisilmukka krediittiSilmukka = {CatchUp::DropBacklog, 5, tiimisaantoLoppu};
const Pelisilmukka tavoiteSilmukka = {CatchUp::KeepOne, 10, pistesaantoLoppu};

float kohtaY(int kohta) { return 4.0f - 2.0f * kohta; }

// Every slot takes its team and pilot from the settings.
void asetaPaikat() {
  players = std::clamp(sets.playermaara, 2, maxPlayers);
  for (int i = 0; i < maxPlayers; ++i) {
    Player& p = player[i];
    p.tiimi = std::clamp(sets.team[i], 0, std::max(0, std::min(cpisteita, maxPlayers) - 1));
    p.ihmispelaaja = sets.ihminen[i];
  }
}

// With `satunnaisetAlukset` every slot also gets a fresh random ship.
Pelisilmukka aloitaPeli(int tila, bool krediitit, bool valinta, bool satunnaisetAlukset) {
  asetaPaikat();
  nollaaOttelu(tila, krediitit, valinta, krediitit ? static_cast<float>(fullcredits) : 0.0f);
  if (satunnaisetAlukset)
    for (Player& p : player) p.uudestaan(alus[satunnainenAlusnumero()]);
  if (tila >= 2) return tavoiteSilmukka;
  return krediitit ? krediittiSilmukka : vapaaSilmukka;
}

// The frozen match goes on; an objective match carries on as a death match.
Pelisilmukka jatkaPelia() {
  gamemode = pistepeli ? 0 : 1;
  return pistepeli ? krediittiSilmukka : vapaaSilmukka;
}

void voittoruutu() {
  const int tiimi = johtavaTiimi();
  entterpressed = false;
  while (!entterpressed) {
    processEvents();
    waitNextFrame();
    voitonPiirto(tiimi);
    updateAudio();
  }
}

void avaaKohta(int kohta) {
  if (kohta == kohtaAsetukset)
    asetusmenu();
  else
    pelaa(aloitaKohta(kohta));
}

void piirraKohdat(int valittu) {
  char luku[16];
  for (int i = 0; i < paikallisiaKohtia; ++i) {
    if (i == valittu)
      glColor4f(1, 0, 0, 1);
    else
      glColor4f(1, 1, 1, 1);
    const float y = kohtaY(i);
    gl_println(tekstiX, y, tekstiZ, kohtienTekstit[i]);
    if (i != kohtaKrediitit) continue;
    std::snprintf(luku, sizeof luku, "%d", static_cast<int>(fullcredits));
    gl_println(krediittiLukuX, y, tekstiZ, luku);
    gl_println(krediittiTekstiX, y, tekstiZ, "Credits");
  }
}

void piirraOtsikko() {
  const char* otsikko = "local game";
  glColor4f(1, 0.75f, 0.15f, 1);
  gl_println(tekstiX, otsikkoY, tekstiZ, otsikko, otsikkoKoko);
}

}  // namespace

Pelisilmukka aloitaKohta(int kohta) {
  switch (kohta) {
    case kohtaSatunnaiset: return aloitaPeli(1, false, false, true);
    case kohtaJatka: return jatkaPelia();
    case kohtaKrediitit: return aloitaPeli(0, true, true, false);
    case kohtaKrediititSatunn: return aloitaPeli(1, true, false, true);
    case kohtaDominointi: return aloitaPeli(2, false, false, true);
    case kohtaLippu: return aloitaPeli(3, false, false, true);
    default: return aloitaPeli(4, false, false, true);
  }
}

bool pelikierros(const Pelisilmukka& silmukka) {
  paceAndCalculate(silmukka.kiinniotto, silmukka.raja, calculateFrame);
  processEvents();
  const bool voitettu = silmukka.loppuu && silmukka.loppuu();
  if (voitettu) escpressed = true;
  drawedframes++;
  pelinPiirto(framecounter);
  framesdrawn++;
  updateAudio();
  return voitettu;
}

void pelaa(const Pelisilmukka& silmukka) {
  kenttaPelattu = true;
  escpressed = false;
  bool voitettu = false;
  while (!escpressed) voitettu = pelikierros(silmukka);
  if (voitettu) voittoruutu();
}

void onePlayerGameMenu() { valikkoSilmukka(kohtaPoistu, avaaKohta, drawOnePlayerGameMenu, false); }

void drawOnePlayerGameMenu(int selected) {
  glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  if (kenttaPelattu)
    piirraMaailma();
  else
    piirraTaustakuva(texture[tx::blueNebula]);
  tummennaRuutu(0.6f);
  valikonNakyma(tekstiX - 1, valikonOikeaReuna);
  glEnable(GL_TEXTURE_2D);
  glEnable(GL_BLEND);
  glBlendFunc(GL_SRC_ALPHA, GL_ONE);  // the glyphs' black adds nothing
  piirraOtsikko();
  piirraKohdat(selected);
  glEnable(GL_LIGHTING);
  glEnable(GL_DEPTH_TEST);
  glDisable(GL_BLEND);
  glColor4f(1, 1, 1, 1);
  naytaKuva();
}
