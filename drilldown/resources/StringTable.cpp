#include "StringTable.h"

#include <algorithm>
#include <iterator>

namespace {

struct Entry {
    int id;
    const char* text;
};

// Sorted by id. 10002, 10031 and 10038 are not used by the module and are left out.
constexpr Entry kStrings[] = {
    {10000, "Analyse Drill-Down "},
    {10001, "Sélectionnez les variables pour le forage"},
    {10003, "Variables catégorielles"},
    {10004, "Variables continues"},
    {10005, "Mémoire insuffisante pour terminer les calculs demandés ; fermez les autres "
            "applications et recommencez."},
    {10006, "Calculs en cours ... "},
    {10007, "Synthèse de l'analyse drill-down"},
    {10008, "Histogramme de la variable du drill-down : %s"},
    {10009, "Tableau de fréquence de %s"},
    {10010, "Statistiques descriptives"},
    {10011, "Trop de valeurs."},
    {10012, "Valeur incorrecte (ne peut être acceptée)."},
    {10013, "Limite inférieure plus grande que la limite supérieure."},
    {10014, "Pas assez de valeurs."},
    {10015, "Catégorie"},
    {10016, "Variable"},
    {10017, "Boîtes à Moustaches des Variables Etudiées"},
    {10018, "Feuille de données après le drill down"},
    {10019, "!372&Drill down"},
    {10020, "!373Drill &up"},
    {10021, "Histogramme pour le balayage : "},
    {10022, "CATEGORY: %s"},
    {10023, "\nCOUNT: %f"},
    {10024, "Histogramme de la variable étudiée : "},
    {10025, "N Total : %d, Sélectionné : %d"},
    {10026, "N Total : %d, Sélectionné : %d"},
    {10027, "Description"},
    {10028, "Sélectionne les variables à étudier"},
    {10029, "Variables catégorielles à étudier"},
    {10030, "Variables continues à étudier"},
    {10032, "Corrélations\n%s"},
    {10033, "Manquante(s)"},
    {10034, "Camembert des variables étudiées : "},
    {10035, "Camembert pour la variable de drill-down : "},
    {10036, "Tracé empilé des variables étudiées"},
    {10037, "Tracé empilé des variables du drill-down"},
    {10039, "Nombre d'obs. relatif (%)"},
    {10040, "Effectif"},
    {10041, "Effectif pondéré"},
    {10042, "Sélectionnez deux listes de var. (var. horizontales et verticales des tracés) :"},
    {10043, "Première liste de variables (horizont.) :"},
    {10044, "Deuxième liste de variables (verticales) :"},
    {10045, "Histogramme 3D des variables : %s et %s"},
    {10046, "Effectif"},
    {10047, "Effectif\nCumulé"},
    {10048, "Pourcentage(%)"},
    {10049, "Pourcentage\nCumulé(%)"},
    {10050, "Moyenne"},
    {10051, "Ecart-Type              "},
    {10052, "Minimum       "},
    {10053, "Maximum       "},
    {10054, "Observations"},
    {10055, "Obs. pondérées"},
    {10056, "Merci de vérifier le type de tracé de Boîte à moustaches"},
    {10057, "Le nombre d'observations est nul."},
    {10058, "Boîte de dialogue du Panneau de Démarrage Analyse Drill-Down"},
    {10059, "Aucune variable à étudier n'est sélectionnée. \nVous devez sélectionner au moins une "
            "variable à étudier."},
    {10060, "Aucune variable du drill-down n'est sélectionnée. \nVous devez sélectionner au "
            "moins une variable de drill-down."},
};

} // namespace

const char* ModuleString(int id) {
    const auto* it = std::lower_bound(std::begin(kStrings), std::end(kStrings), id,
                                      [](const Entry& e, int key) { return e.id < key; });
    return it != std::end(kStrings) && it->id == id ? it->text : "";
}

int ModuleStringCount() { return static_cast<int>(std::size(kStrings)); }

int ModuleStringIdAt(int index) { return kStrings[index].id; }
