// SPDX-License-Identifier: MIT
// The keys of wpa_supplicant's configuration file by the values that they take. Those with a form
// of their own stand in wpa_supplicant_settings.cpp.

#pragma once

#include <string_view>

/// Whole numbers or texts and their bounds; 0 is none.
struct bounded_keys {
    long low;
    long high;
    std::string_view keys;
};

constexpr bounded_keys global_numbers[] = {
    {0, 0,
     "ap_scan user_mpm mesh_max_inactivity dot11RSNASAERetransPeriod "
     "disable_scan_offload fast_reauth external_sim dot11RSNAConfigPMKLifetime "
     "dot11RSNAConfigPMKReauthThreshold dot11RSNAConfigSATimeout update_config "
     "p2p_listen_reg_class p2p_listen_channel p2p_oper_reg_class p2p_oper_channel "
     "p2p_group_idle p2p_go_ht40 p2p_go_vht p2p_go_he p2p_go_edmg p2p_disabled "
     "p2p_no_group_iface p2p_device_random_mac_addr p2p_interface_random_mac_addr "
     "p2p_6ghz_disable bss_max_count bss_expiration_age bss_expiration_scan_count "
     "max_num_sta p2p_go_max_inactivity okc pmf dtim_period beacon_int scan_cur_freq "
     "scan_res_valid_for_connect sched_scan_interval sched_scan_start_delay "
     "tdls_external_control p2p_search_delay mac_addr rand_addr_lifetime "
     "preassoc_mac_addr key_mgmt_offload passive_scan reassoc_same_bss_optim "
     "wps_priority gas_address3 gas_rand_addr_lifetime"},
    {0, 1,
     "mesh_fwding auto_uuid wps_cred_add_sae persistent_reconnect p2p_intra_bss "
     "p2p_add_cli_chan p2p_optimize_listen_chan p2p_ignore_shared_freq p2p_cli_probe "
     "filter_ssids ap_isolate disassoc_low_ack hs20 interworking go_interworking "
     "go_internet pbc_in_m1 auto_interworking sae_pmkid_in_assoc ignore_old_scan_res "
     "cert_in_cb wpa_rsc_relaxation ftm_responder ftm_initiator coloc_intf_reporting "
     "disable_btm extended_key_id wowlan_disconnect_on_deinit"},
    {0, 2, "wps_cred_processing gas_rand_mac_addr dpp_config_processing"},
    {1, 3, "eapol_version mbo_cell_capa"},
    {0, 3, "p2p_go_freq_change_policy sae_pwe oce"},
    {0, 15, "p2p_go_intent access_network_type go_access_network_type"},
    {8, 63, "p2p_passphrase_len"},
    {-100, 0, "filter_rssi"},
    {-120, 0, "disassoc_imminent_rssi_threshold"},
    {0, 127, "p2p_go_ctwindow"},
    {1, 255, "fst_priority"},
    {0, 255, "max_peer_links go_venue_group go_venue_type"},
    {16, 65535, "wps_nfc_dev_pw_id"},
    {1, 1073741823, "fst_llt"},
};

constexpr bounded_keys global_texts[] = {
    {0, 0,
     "ctrl_interface ctrl_interface_group opensc_engine_path pkcs11_engine_path "
     "pkcs11_module_path openssl_ciphers pcsc_reader pcsc_pin driver_param "
     "config_methods p2p_ssid_postfix autoscan ext_password_backend osu_dir "
     "wowlan_triggers sched_scan_plans non_pref_chan dpp_name dpp_mud_url"},
    {1, 16, "fst_group_id"},
    {0, 32, "device_name model_name model_number serial_number"},
    {0, 64, "manufacturer"},
};

constexpr bounded_keys network_numbers[] = {
    {0, 0,
     "mem_only_psk bg_scan_period vht_center_freq1 vht_center_freq2 engine engine2 "
     "machine_engine machine_ocsp eapol_flags sim_num erp wep_tx_keyidx priority "
     "eap_workaround fragment_size ocsp ocsp2 dot11MeshMaxRetries dot11MeshRetryTimeout "
     "dot11MeshConfirmTimeout dot11MeshHoldingTimeout wpa_ptk_rekey group_rekey vht_capa "
     "vht_capa_mask ap_max_inactivity dtim_period beacon_int macsec_replay_window "
     "update_identifier dpp_netaccesskey_expiry"},
    {0, 1,
     "scan_ssid ht vht no_auto_peer mesh_fwding proactive_key_caching mixed_cell "
     "fixed_freq enable_edmg acs disable_ht disable_sgi disable_ldpc ht40_intolerant "
     "disable_vht macsec_policy macsec_integ_only macsec_replay_protect wps_disabled "
     "owe_only owe_ptk_workaround multi_ap_backhaul_sta ft_eap_pmksa_caching beacon_prot"},
    {-1, 1, "ht40 disable_ht40 tx_stbc disable_max_amsdu"},
    {0, 2, "disabled wpa_deny_ptk0_rekey ignore_broadcast_ssid mac_addr pbss dpp_pfs sae_pk"},
    {0, 3, "max_oper_chwidth"},
    {-1, 3,
     "rx_stbc ampdu_factor vht_rx_mcs_nss_1 vht_rx_mcs_nss_2 vht_rx_mcs_nss_3 "
     "vht_rx_mcs_nss_4 vht_rx_mcs_nss_5 vht_rx_mcs_nss_6 vht_rx_mcs_nss_7 "
     "vht_rx_mcs_nss_8 vht_tx_mcs_nss_1 vht_tx_mcs_nss_2 vht_tx_mcs_nss_3 "
     "vht_tx_mcs_nss_4 vht_tx_mcs_nss_5 vht_tx_mcs_nss_6 vht_tx_mcs_nss_7 "
     "vht_tx_mcs_nss_8"},
    {-1, 7, "ampdu_density"},
    {0, 255, "mka_priority transition_disable"},
    {-255, 1, "mesh_rssi_threshold"},
    {1, 65534, "macsec_port"},
    {0, 65535, "fils_dh_group owe_group"},
    {0, 70200, "frequency"},
};

constexpr bounded_keys network_texts[] = {
    {0, 0,
     "sae_password sae_password_id identity anonymous_identity imsi_identity "
     "machine_identity ca_cert ca_path client_cert private_key private_key_passwd "
     "dh_file subject_match check_cert_subject altsubject_match domain_suffix_match "
     "domain_match ca_cert2 ca_path2 client_cert2 private_key2 private_key2_passwd "
     "dh_file2 subject_match2 check_cert_subject2 altsubject_match2 domain_suffix_match2 "
     "domain_match2 phase1 phase2 machine_phase2 pcsc pin engine_id key_id cert_id "
     "ca_cert_id pin2 engine_id2 key_id2 cert_id2 ca_cert_id2 machine_ca_cert "
     "machine_ca_path machine_client_cert machine_private_key machine_private_key_passwd "
     "machine_dh_file machine_subject_match machine_check_cert_subject "
     "machine_altsubject_match machine_domain_suffix_match machine_domain_match "
     "machine_pin machine_engine_id machine_key_id machine_cert_id machine_ca_cert_id "
     "openssl_ciphers pac_file id_str bgscan ht_mcs dpp_connector dpp_netaccesskey "
     "dpp_csign dpp_pp_key"},
    {0, 15, "roaming_consortium_selection"},
    {0, 32, "ssid"},
};

/// Those that name frequencies, devices, files and other things of no use on a camera: Debian's
/// build looks at their values, this model takes them unseen.
constexpr std::string_view unjudged_global_keys =
    "no_ctrl_interface bgscan load_dynamic_eap wps_vendor_ext_m1 sec_device_type p2p_pref_chan "
    "p2p_no_go_freq ip_addr_go ip_addr_mask ip_addr_start ip_addr_end "
    "p2p_device_persistent_mac_addr hessid wps_nfc_dh_pubkey wps_nfc_dh_privkey wps_nfc_dev_pw "
    "sae_groups ap_assocresp_elements ap_vendor_elements freq_list initial_freq_list";

constexpr std::string_view unjudged_network_keys =
    "bssid_hint bssid_ignore bssid_accept bssid_blacklist bssid_whitelist group_mgmt scan_freq "
    "freq_list eap password machine_password wep_key0 wep_key1 wep_key2 wep_key3 mode "
    "ieee80211w ocv peerkey edmg_channel mesh_basic_rates go_p2p_dev_addr p2p_client_list "
    "psk_list mka_cak mka_ckn";
